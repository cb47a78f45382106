// What is drawn over the curves: when there was no connection, when the aircraft changed, and when
// commands were down.

const kept = 1000;

export class Marks {
  constructor() {
    this.gaps = []; // {from, to, text}; to is null while it lasts
    this.moments = []; // {time, text}
    this.presses = []; // {command, from, to}
  }

  /** A state of the connection. Returns whether values arrive. */
  state(time, state, text) {
    const open = this.gaps.at(-1)?.to === null ? this.gaps.at(-1) : null;
    if (state === 'aircraft') {
      this.moments.push({ time, text });
      this.moments.splice(0, this.moments.length - kept);
      return true;
    }
    if (state === 'connected') {
      if (open) {
        open.to = time;
      }
      return true;
    }
    if (!open) {
      this.gaps.push({ from: time, to: null, state, text });
      this.gaps.splice(0, this.gaps.length - kept);
      this.presses.filter((press) => press.to === null).forEach((press) => { press.to = time; });
    }
    return false;
  }

  command(time, command, event) {
    const open = this.presses.findLast((press) => press.command === command && press.to === null);
    if (event === 'down' && !open) {
      this.presses.push({ command, from: time, to: null });
    } else if (event === 'pressed') {
      this.presses.push({ command, from: time, to: time });
    } else if (event === 'up' && open) {
      open.to = time;
    }
    this.presses.splice(0, this.presses.length - kept);
  }

  isDown(command) {
    return this.presses.some((press) => press.command === command && press.to === null);
  }
}
