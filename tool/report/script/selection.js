// What is selected, for all views at once: {kind: 'pin', pin}, {kind: 'cell', number},
// {kind: 'instruction', name}, {kind: 'finding', index}, or null.

export class Selection {
  constructor() {
    this.current = null;
    this.listeners = [];
  }

  listen(listener) {
    this.listeners.push(listener);
  }

  set(current) {
    this.current = current;
    for (const listener of this.listeners) listener(current);
  }

  pin(pin) {
    this.set({ kind: 'pin', pin });
  }

  cell(number) {
    this.set({ kind: 'cell', number });
  }

  instruction(name) {
    this.set({ kind: 'instruction', name });
  }

  finding(index) {
    this.set({ kind: 'finding', index });
  }
}
