// Starts `tarnlet lsp` and lets it do the work.

import * as vscode from 'vscode';
import { LanguageClient, type LanguageClientOptions } from 'vscode-languageclient/node';

let client: LanguageClient | undefined;

interface Settings {
  packageFolders: string[];
  package: string;
  strict: boolean;
}

function settings(): Settings {
  const given = vscode.workspace.getConfiguration('tarnlet');
  return {
    packageFolders: given.get<string[]>('packageFolders', []),
    package: given.get('package', ''),
    strict: given.get('strict', false),
  };
}

async function start(): Promise<void> {
  const command = vscode.workspace.getConfiguration('tarnlet').get('path', 'tarnlet');
  const options: LanguageClientOptions = {
    documentSelector: [{ scheme: 'file', language: 'bsdl' }],
    initializationOptions: settings(),
  };
  client = new LanguageClient('tarnlet', 'tarnlet', { command, args: ['lsp'] }, options);
  try {
    await client.start();
  } catch {
    client = undefined;
    const choice = await vscode.window.showErrorMessage(
      `'${command}' could not be started. Install tarnlet, or set the path of the program.`,
      'Open Settings',
    );
    if (choice)
      await vscode.commands.executeCommand('workbench.action.openSettings', 'tarnlet.path');
  }
}

async function restart(): Promise<void> {
  await client?.stop();
  await start();
}

async function settingsChanged(event: vscode.ConfigurationChangeEvent): Promise<void> {
  if (event.affectsConfiguration('tarnlet.path')) await restart();
  else if (event.affectsConfiguration('tarnlet'))
    await client?.sendNotification('workspace/didChangeConfiguration', { settings: settings() });
}

export async function activate(context: vscode.ExtensionContext): Promise<void> {
  context.subscriptions.push(
    vscode.commands.registerCommand('tarnlet.restart', restart),
    vscode.workspace.onDidChangeConfiguration(settingsChanged),
  );
  await start();
}

export async function deactivate(): Promise<void> {
  await client?.stop();
}
