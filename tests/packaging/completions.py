#!/usr/bin/env python3
"""Types commands into interactive shells, completes them with the tab key, and runs them.

usage: completions.py [SHARE]

SHARE is a share folder of a build; without it the shells use what is installed. `tarnlet` has to be
in the PATH. Shells that are not there are skipped, and named.
"""

import os
import pathlib
import pty
import select
import shutil
import subprocess
import sys
import tempfile
from concurrent.futures import ProcessPoolExecutor

DESCRIPTION = pathlib.Path(__file__).resolve().parents[2] / "examples/demo.bsd"
# What is typed, and what has to run. ~ is the tab key.
CASES = (
    ("man~ eb~", "manual ebst"),
    ("completion fi~", "completion fish"),
    ("check --explain opcode-len~", "check --explain opcode-length"),
    ("list --fields component,ir-l~ " + str(DESCRIPTION),
     "list --fields component,ir-length " + str(DESCRIPTION)),
    ("list --list-f~", "list --list-fields"),
    ("check --form~ sar~ " + str(DESCRIPTION), "check --format sarif " + str(DESCRIPTION)),
)


def shells(share, scratch):
    installed = share is None
    return {
        "bash": (["bash", "--norc", "--noprofile", "-i"],
                 ". /usr/share/bash-completion/bash_completion" if installed else
                 f". {share}/bash-completion/completions/tarnlet"),
        "zsh": (["zsh", "-f", "-i"],
                ("" if installed else f"fpath=({share}/zsh/site-functions $fpath); ") +
                f"autoload -Uz compinit; compinit -u -d {scratch}/zcompdump"),
        "fish": (["fish", "-i"],
                 "true" if installed else
                 f"set -p fish_complete_path {share}/fish/vendor_completions.d"),
    }


class Terminal:
    def __init__(self, command, scratch):
        self.process, self.master = pty.fork()
        if self.process == 0:
            os.environ.update(TERM="xterm", HOME=str(scratch), LC_ALL="C.UTF-8")
            os.execvp(command[0], command)

    def quiet(self, seconds):
        """Reads until nothing has come for a while."""
        while select.select([self.master], [], [], seconds)[0]:
            try:
                if not os.read(self.master, 65536):
                    return
            except OSError:
                return

    def type(self, text):
        for piece in text.replace("~", "\t~").split("~"):
            os.write(self.master, piece.encode())
            self.quiet(1.5 if piece.endswith("\t") else 0.2)

    def wait_for(self, path):
        for _ in range(100):
            self.quiet(0.1)
            if path.exists():
                return path.read_bytes()
        return None


def try_shell(name, command, setting, scratch):
    if not shutil.which(name):
        print(f"{name} is not there")
        return 0
    terminal = Terminal(command, scratch)
    terminal.quiet(2)
    terminal.type(setting + "\n")
    terminal.quiet(2)
    wrong = 0
    for number, (typed, meant) in enumerate(CASES):
        output, done = scratch / f"{name}{number}", scratch / f"{name}{number}.done"
        terminal.type(f"tarnlet {typed} > {output}; touch {done}\n")
        terminal.wait_for(done)
        got = output.read_bytes() if output.exists() else b""
        expected = subprocess.run(["tarnlet", *meant.split()], stdout=subprocess.PIPE,
                                  check=False).stdout
        if not expected or got != expected:
            print(f"{name}: 'tarnlet {typed}' did not become 'tarnlet {meant}'")
            wrong = 1
    terminal.type("exit\n")
    os.close(terminal.master)
    os.waitpid(terminal.process, 0)
    return wrong


def main(share=None):
    with tempfile.TemporaryDirectory() as folder, ProcessPoolExecutor() as pool:
        scratch = pathlib.Path(folder)
        tries = [pool.submit(try_shell, name, command, setting, scratch)
                 for name, (command, setting) in shells(share, scratch).items()]
        return max(each.result() for each in tries)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
