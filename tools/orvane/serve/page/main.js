// Puts the page together: what the address names is watched, drawn and tabled.

import { formatAddress, parseAddress } from './address.js';
import { CommandList } from './commands.js';
import { History } from './history.js';
import { Link } from './link.js';
import { Marks } from './marks.js';
import { offerNames } from './offers.js';
import { Plot, scaledToOwn } from './plot.js';
import { boundsOf, csvText, numberText } from './texts.js';
import { ValueTable } from './values.js';

/* global Dygraph */

const drawEvery = 50; // ms
const tellEvery = 200; // ms, for numbers that people read
const silence = 3000; // ms without any reading while connected

const $ = (id) => document.getElementById(id);
const view = parseAddress(location.hash);
const history = new History();
const marks = new Marks();
let start = { names: [], commands: [], axes: [], place: '', replay: false };
let series = [];
let missing = ''; // what to say about names
let plots = [];
let isAlive = false;
let window_ = null; // [from, to] while paused
let hovered = null;
let clock = { time: 0, at: performance.now() };
let drawnAt = 0;
let toldAt = 0;

let isReplayOver = false;

const now = () => (isReplayOver ? history.lastTime : clock.time + (performance.now() - clock.at) / 1000);
const note = (text) => { $('note').textContent = text; };
const saveAddress = () => globalThis.history.replaceState(null, '', formatAddress(view));

function showState(state, text) {
  $('state').dataset.state = state;
  $('state').textContent = text;
}

const link = new Link(view.token, {
  series(event) {
    series = event.series.map((each, index) => ({ ...each, index }));
    history.setNames(series.map((each) => each.name));
    makePlots();
    values.setSeries(series, view.ranges);
    const text = event.missing.length > 0 ? `the simulator does not have ${event.missing.join(', ')}` : '';
    if (text !== missing) {
      missing = text;
      note(text);
    }
  },
  reading([time, ...pairs]) {
    const changes = new Map();
    for (let i = 0; i < pairs.length; i += 2) {
      changes.set(series[pairs[i]].name, pairs[i + 1] ?? NaN);
    }
    clock = { time, at: performance.now() };
    history.append(time, changes);
  },
  state(event) {
    // A replay that is over stays to be looked at.
    isReplayOver = event.state === 'ended';
    clock = { time: event.time, at: performance.now() };
    const texts = { waiting: 'waiting for the simulator', lost: 'connection lost', ended: 'the recording is over' };
    if (isReplayOver) {
      showState('connected', texts.ended);
      return;
    }
    isAlive = marks.state(event.time, event.state, event.text);
    if (!isAlive) {
      history.interrupt(event.time);
    }
    showState(isAlive ? 'connected' : event.state, isAlive ? `connected to ${start.place}` : `${texts[event.state]}: ${event.text}`);
  },
  command: (event) => marks.command(event.time, event.command, event.event),
  refused: (text) => text && note(text),
  gone() {
    if (isAlive) {
      marks.state(now(), 'gone', '');
      history.interrupt(now());
    }
    isAlive = false;
    showState('gone', 'orvane is gone; the page tries again');
  },
});

const values = new ValueTable($('values'), {
  set: (each, text) => setLatest(each, text),
  drop: (each) => change({ names: view.names.filter((name) => name !== each.argument) }),
  range(each, low, high) {
    view.ranges = [...view.ranges.filter(([name]) => name !== each.name), [each.name, low, high]];
    saveAddress();
    values.setSeries(series, view.ranges);
  },
});

const commands = new CommandList($('commands'), {
  press: async (command) => note(await link.press(command)),
  hold: async (command) => note(await link.hold(command)),
  release: async (command) => note(await link.release(command)),
  drop: (command) => change({ commands: view.commands.filter((each) => each !== command) }),
});

// One request at a time: of a slider's values only the latest matters.
const waiting = new Map();
async function setLatest(each, text) {
  const target = `${each.name}:${each.type}`;
  const isBusy = waiting.has(target);
  waiting.set(target, text);
  while (!isBusy && waiting.get(target) !== null) {
    const latest = waiting.get(target);
    waiting.set(target, null);
    note(await link.set(`${target}=${latest}`));
  }
  if (!isBusy) {
    waiting.delete(target);
  }
}

async function change(what) {
  const before = { names: view.names, commands: view.commands };
  const apply = (changed) => {
    Object.assign(view, changed);
    saveAddress();
    commands.setCommands(view.commands);
  };
  apply(what);
  const refusal = await link.watch(view.names, view.commands);
  note(refusal || missing);
  if (refusal) {
    apply(before);
  }
}

function makePlots() {
  plots.forEach((plot) => plot.remove());
  $('figures').className = view.plots;
  const groups = view.plots === 'one' ? [series].filter((each) => each.length > 0) : series.map((each) => [each]);
  plots = groups.map((group) => new Plot($('figures'), group, marks, {
    hover: (time) => { hovered = time; },
    window: (from, to) => pauseAt([from, to]),
    follow,
  }));
}

function pauseAt(stretch) {
  window_ = stretch;
  $('pause').setAttribute('aria-pressed', 'true');
  $('pause').textContent = 'Follow';
}

function follow() {
  window_ = null;
  $('pause').setAttribute('aria-pressed', 'false');
  $('pause').textContent = 'Pause';
}

const visible = (at = now()) => window_ ?? [at - view.span, at];

function sharedRange(all) {
  let least = Infinity;
  let most = -Infinity;
  for (const rows of all) {
    for (const row of rows) {
      for (let i = 1; i < row.length; i += 1) {
        if (!Number.isNaN(row[i])) {
          least = Math.min(least, row[i]);
          most = Math.max(most, row[i]);
        }
      }
    }
  }
  const margin = (most - least || 1) * 0.05;
  return least <= most ? [least - margin, most + margin] : null;
}

/** Until when the values hold: to now, or to where they ended. */
function rowsOf(plot, from, to) {
  const names = plot.series.map((each) => each.name);
  const rows = history.thinned(names, from, to, 2 * plot.width);
  const end = Math.min(to, history.lastTime + (isAlive ? silence / 1000 : 0));
  const last = rows.at(-1);
  if (last && end > last[0]) {
    rows.push([end, ...last.slice(1)]);
  }
  return rows.length > 0 ? rows : [[from, ...names.map(() => NaN)]];
}

function draw() {
  const at = now();
  const [from, to] = visible(at);
  const shown = plots.filter((plot) => plot.isVisible);
  const rows = shown.map((plot) => rowsOf(plot, from, to));
  const range = view.scale === 'shared' ? sharedRange(rows) : null;
  shown.forEach((plot, i) => {
    plot.commands = view.commands;
    const isNormalised = view.scale === 'own' && plot.series.length > 1;
    plot.show(isNormalised ? scaledToOwn(rows[i]) : rows[i], from, to, at, isNormalised ? [-0.05, 1.05] : range, !isNormalised);
  });
}

function tell() {
  const [from, to] = visible();
  const moment = hovered ?? to;
  const text = hovered === null ? (window_ ? 'at the end of the visible stretch' : 'now') : `${numberText(hovered - now())} s ago`.replace('-', '');
  values.caption.textContent = `Values ${text}; the rest over the visible ${numberText(Number((to - from).toFixed(2)))} s`;
  values.show(history, moment, from, to, isAlive);
  commands.show((command) => marks.isDown(command));
  for (const meter of document.querySelectorAll('#axes meter')) {
    const value = history.valueAt(meter.dataset.name, moment);
    meter.value = Number.isNaN(value) ? meter.min : value;
    meter.parentElement.querySelector('output').textContent = numberText(value);
  }
}

function frame(at) {
  if (isAlive && !isReplayOver && performance.now() - clock.at > silence) {
    link.on.gone();
  }
  if (at - drawnAt >= drawEvery) {
    drawnAt = at;
    draw();
  }
  if (at - toldAt >= tellEvery) {
    toldAt = at;
    tell();
  }
  requestAnimationFrame(frame);
}

function makeAxes() {
  for (const axis of start.axes) {
    const box = document.createElement('div');
    box.className = 'axis';
    const bounds = boundsOf(axis.mapping) ?? [0, 1];
    const meter = Object.assign(document.createElement('meter'), { min: bounds[0], max: bounds[1] });
    meter.dataset.name = axis.argument.replace(/[:@].*/, '');
    const line = document.createElement('p');
    line.append(axis.name, document.createElement('output'));
    box.append(line, meter);
    $('axes').append(box);
  }
}

function save(name, blob) {
  const anchor = Object.assign(document.createElement('a'), { href: URL.createObjectURL(blob), download: name });
  anchor.click();
  setTimeout(() => URL.revokeObjectURL(anchor.href), 10000);
}

function saveCsv() {
  const names = series.map((each) => each.name);
  save('orvane.csv', new Blob([csvText(names, history.rows(names, ...visible()))], { type: 'text/csv' }));
}

function savePng() {
  const box = $('figures').getBoundingClientRect();
  const scale = devicePixelRatio;
  const canvas = Object.assign(document.createElement('canvas'), { width: box.width * scale, height: box.height * scale });
  const context = canvas.getContext('2d');
  context.scale(scale, scale);
  context.fillStyle = getComputedStyle(document.body).backgroundColor;
  context.fillRect(0, 0, box.width, box.height);
  let y = 0;
  plots.forEach((plot) => { y += plot.drawOn(context, y) + 8; });
  canvas.toBlob((blob) => save('orvane.png', blob));
}

function moveWindow(by, factor = 1) {
  const [from, to] = visible();
  const middle = (from + to) / 2 + by * (to - from);
  const half = ((to - from) * factor) / 2;
  pauseAt([middle - half, middle + half]);
}

const keys = {
  ' ': () => (window_ ? follow() : pauseAt(visible())),
  ArrowLeft: () => moveWindow(-0.2),
  ArrowRight: () => moveWindow(0.2),
  '+': () => moveWindow(0, 0.5),
  '-': () => moveWindow(0, 2),
  0: follow,
  Escape: follow,
};

function listen() {
  $('pause').onclick = keys[' '];
  $('csv').onclick = saveCsv;
  $('png').onclick = savePng;
  for (const id of ['span', 'plots', 'scale']) {
    $(id).value = String(view[id]);
    $(id).onchange = () => {
      view[id] = id === 'span' ? Number($(id).value) : $(id).value;
      saveAddress();
      follow();
      if (id !== 'span') {
        makePlots();
      }
    };
  }
  $('view').onsubmit = (event) => event.preventDefault();
  for (const [form, key, offered] of [['add-name', 'names', 'datarefs'], ['add-command', 'commands', 'commands']]) {
    $(form).onsubmit = (event) => {
      event.preventDefault();
      const input = $(form).elements.namedItem('name');
      const name = input.value.trim();
      if (name && !view[key].includes(name)) {
        change({ [key]: [...view[key], name] });
      }
      input.value = '';
    };
    offerNames($(form).elements.namedItem('name'), offered);
  }
  addEventListener('keydown', (event) => {
    if (!event.target.closest('input, select, button, summary, a') && keys[event.key] && !event.ctrlKey && !event.metaKey) {
      event.preventDefault();
      keys[event.key]();
    }
  });
  addEventListener('pagehide', () => link.releaseAll());
  matchMedia('(prefers-color-scheme: dark)').onchange = makePlots;
  setInterval(() => link.reopen(), 2000);
}

async function begin() {
  start = await (await fetch('start')).json();
  view.names = view.names ?? start.names;
  view.commands = view.commands ?? start.commands;
  $('library').textContent = Dygraph.VERSION;
  document.title = `orvane ${start.place}`;
  saveAddress();
  makeAxes();
  commands.setCommands(view.commands);
  listen();
  if (!view.token && !start.replay) {
    note('This page cannot write. To write, open the address that orvane serve printed.');
  }
  link.open();
  link.watch(view.names, view.commands);
  requestAnimationFrame(frame);
}

begin();
