// The connection to orvane: one stream of events in, requests out.

const renewEvery = 500; // ms; orvane releases a command after 2 s without

export class Link {
  /** `on` has: series, reading, state, command, refused, gone. */
  constructor(token, on) {
    this.id = Array.from(crypto.getRandomValues(new Uint8Array(16)), (byte) => byte.toString(16).padStart(2, '0')).join('');
    this.token = token;
    this.on = on;
    this.held = new Map();
    this.wanted = null;
  }

  open() {
    const source = new EventSource(`events?id=${this.id}`);
    source.onopen = async () => this.on.refused(await this.want());
    source.onerror = () => this.on.gone();
    source.onmessage = (event) => this.on.reading(JSON.parse(event.data));
    for (const kind of ['series', 'state', 'command']) {
      source.addEventListener(kind, (event) => this.on[kind](JSON.parse(event.data)));
    }
    this.source = source;
  }

  /** Opens the stream again if the browser has given up. */
  reopen() {
    if (this.source.readyState === EventSource.CLOSED) {
      this.open();
    }
  }

  /** Returns why it was refused, or nothing; then what was wanted before stays. */
  async watch(names, commands) {
    const before = this.wanted;
    this.wanted = { names, commands };
    const refusal = this.source.readyState === EventSource.OPEN ? await this.want() : '';
    if (refusal) {
      this.wanted = before;
    }
    return refusal;
  }

  want() {
    return this.post('watch', { id: this.id, ...this.wanted });
  }

  /** Each returns why it was refused, or nothing. */
  async set(assignment) {
    return this.post('set', { assignment }, (answer) => (answer.taken ? '' : `${answer.name}: ${answer.value} was not taken; it reads ${answer.reads}`));
  }

  press(command) {
    return this.post('press', { command, id: this.id });
  }

  async hold(command) {
    if (this.held.has(command)) {
      return '';
    }
    this.isLeaving = false;
    const hold = { asked: null };
    const ask = () => { hold.asked = this.post('hold', { command, id: this.id }); };
    this.held.set(command, hold);
    ask();
    hold.timer = setInterval(ask, renewEvery);
    const refusal = await hold.asked;
    if (refusal) {
      this.forget(command);
    }
    return refusal;
  }

  /** Only after the last request to hold is answered, which would else begin it again. */
  async release(command) {
    const hold = this.forget(command);
    await (this.isLeaving ? null : hold && hold.asked);
    return hold ? this.post('release', { command, id: this.id }) : '';
  }

  /** When the page goes away, nothing can be waited for. */
  releaseAll() {
    this.isLeaving = true;
    [...this.held.keys()].forEach((command) => this.release(command));
  }

  forget(command) {
    const hold = this.held.get(command);
    clearInterval(hold && hold.timer);
    this.held.delete(command);
    return hold;
  }

  async post(path, body, refusalOf = () => '') {
    try {
      const response = await fetch(path, {
        method: 'POST',
        headers: { 'Content-Type': 'application/json', 'X-Orvane-Token': this.token },
        body: JSON.stringify(body),
        keepalive: path === 'release',
      });
      return response.ok ? refusalOf(await response.json()) : (await response.text()).trim();
    } catch {
      return 'orvane does not answer';
    }
  }
}
