// The list of commands, with buttons to press and to hold them.

import { nameNodes } from './texts.js';

const make = (tag, properties = {}) => Object.assign(document.createElement(tag), properties);

export class CommandList {
  /** `on` has: press, hold, release, drop; each gets a command's name. */
  constructor(list, on) {
    this.list = list;
    this.on = on;
    this.items = new Map();
  }

  setCommands(commands) {
    this.list.replaceChildren();
    this.items.clear();
    commands.forEach((command, i) => this.add(command, i));
  }

  add(command, index) {
    const item = make('li');
    item.dataset.command = command;
    const name = make('span', { className: 'name' });
    name.append(...nameNodes(command));
    name.style.setProperty('--colour', `var(--c${(index + 3) % 8})`);
    const down = make('span', { className: 'down' });
    const press = make('button', { type: 'button', className: 'press', textContent: 'Press' });
    press.onclick = () => this.on.press(command);
    const drop = make('button', { type: 'button', textContent: '×' });
    drop.setAttribute('aria-label', `Drop ${command}`);
    drop.onclick = () => this.on.drop(command);
    item.append(name, down, press, this.holdButton(command), drop);
    this.list.append(item);
    this.items.set(command, down);
  }

  // Held as long as the pointer or the key is down.
  holdButton(command) {
    const button = make('button', { type: 'button', className: 'hold', textContent: 'Hold' });
    button.setAttribute('aria-pressed', 'false');
    const begin = () => {
      if (button.getAttribute('aria-pressed') === 'false') {
        button.setAttribute('aria-pressed', 'true');
        this.on.hold(command);
      }
    };
    const end = () => {
      if (button.getAttribute('aria-pressed') === 'true') {
        button.setAttribute('aria-pressed', 'false');
        this.on.release(command);
      }
    };
    const isKey = (event) => event.key === ' ' || event.key === 'Enter';
    button.onpointerdown = (event) => {
      button.setPointerCapture(event.pointerId);
      begin();
    };
    button.onpointerup = end;
    button.onpointercancel = end;
    button.onblur = end;
    button.oncontextmenu = (event) => event.preventDefault();
    button.onkeydown = (event) => {
      if (isKey(event)) {
        event.preventDefault();
        begin();
      }
    };
    button.onkeyup = (event) => isKey(event) && end();
    return button;
  }

  show(isDown) {
    for (const [command, down] of this.items) {
      down.textContent = isDown(command) ? 'down' : '';
    }
  }
}
