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
    source.onopen = () => this.want();
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

  watch(names, commands) {
    this.wanted = { names, commands };
    return this.source.readyState === EventSource.OPEN ? this.want() : Promise.resolve('');
  }

  async want() {
    if (this.wanted) {
      this.on.refused(await this.post('watch', { id: this.id, ...this.wanted }));
    }
  }

  /** Each returns why it was refused, or nothing. */
  async set(assignment) {
    return this.post('set', { assignment }, (answer) => (answer.taken ? '' : `${answer.name}: ${answer.value} was not taken, it reads ${answer.reads}`));
  }

  press(command) {
    return this.post('press', { command, id: this.id });
  }

  async hold(command) {
    if (this.held.has(command)) {
      return '';
    }
    const body = { command, id: this.id };
    this.held.set(command, setInterval(() => this.post('hold', body), renewEvery));
    const refusal = await this.post('hold', body);
    if (refusal) {
      this.forget(command);
    }
    return refusal;
  }

  async release(command) {
    return this.forget(command) ? this.post('release', { command, id: this.id }) : '';
  }

  releaseAll() {
    [...this.held.keys()].forEach((command) => this.release(command));
  }

  forget(command) {
    clearInterval(this.held.get(command));
    return this.held.delete(command);
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
