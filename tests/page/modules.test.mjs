// The modules of the page that need no browser.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import { formatAddress, parseAddress } from '../../tools/orvane/serve/page/address.js';
import { History, statistics } from '../../tools/orvane/serve/page/history.js';
import { Marks } from '../../tools/orvane/serve/page/marks.js';
import { isWorthAsking } from '../../tools/orvane/serve/page/offers.js';
import { scaledToOwn, secondTicks } from '../../tools/orvane/serve/page/plot.js';
import { boundsOf, csvText, numberText } from '../../tools/orvane/serve/page/texts.js';

function filled(values) {
  const history = new History(1000);
  history.setNames(['a']);
  values.forEach((value, i) => history.append(i, new Map([['a', value]])));
  return history;
}

test('names are asked for with short plain texts', () => {
  assert.deepEqual(['a', 'ge', 'a'.repeat(101), 'sim/q[', 'sim/*'].map(isWorthAsking), [false, true, false, false, false]);
});

test('an address brings a view back', () => {
  const view = {
    token: 'abc',
    names: ['sim/a:float@kt', 'sim/q[0:2]'],
    commands: ['sim/flight_controls/brakes_max'],
    span: 60,
    plots: 'one',
    scale: 'shared',
    ranges: [['sim/a', '-1', '1']],
  };
  assert.deepEqual(parseAddress(formatAddress(view)), view);
});

test('an address that names nothing, or nonsense, gives what is usual', () => {
  const usual = { token: '', names: null, commands: null, span: 30, plots: 'each', scale: 'own', ranges: [] };
  assert.deepEqual(parseAddress(''), usual);
  assert.deepEqual(parseAddress('#span=7&plots=none&scale=%00&range=x'), usual);
});

test('an address that has dropped all names stays empty', () => {
  assert.deepEqual(parseAddress('#c=x').names, []);
});

test('a value holds until the next reading', () => {
  const history = new History(10);
  history.setNames(['a', 'b']);
  history.append(1, new Map([['a', 5], ['b', 7]]));
  history.append(2, new Map([['b', 8]]));
  assert.deepEqual(history.rows(['a', 'b'], 0, 9), [[1, 5, 7], [2, 5, 8]]);
  assert.equal(history.valueAt('b', 1.9), 7);
  assert.ok(Number.isNaN(history.valueAt('b', 0.5)));
});

test('a lost connection leaves a gap, not the last value', () => {
  const history = filled([1, 2]);
  history.interrupt(5);
  assert.ok(Number.isNaN(history.valueAt('a', 6)));
  history.append(7, new Map([['a', 3]]));
  assert.equal(history.valueAt('a', 8), 3);
});

test('the history forgets its oldest rows and does not grow', () => {
  const history = new History(4);
  history.setNames(['a']);
  for (let i = 0; i < 11; i += 1) {
    history.append(i, new Map([['a', i * 10]]));
  }
  assert.deepEqual(history.rows(['a'], 0, 99), [[7, 70], [8, 80], [9, 90], [10, 100]]);
});

test('a series that stays keeps its past, and a new one has none', () => {
  const history = filled([1, 2]);
  history.setNames(['b', 'a']);
  history.append(2, new Map([['b', 9]]));
  assert.deepEqual(history.rows(['a', 'b'], 0, 9), [[0, 1, NaN], [1, 2, NaN], [2, 2, 9]]);
});

test('thinned rows keep the extremes and the gaps', () => {
  const history = new History(10000);
  history.setNames(['a']);
  for (let i = 0; i < 5000; i += 1) {
    if (i === 4000) {
      history.interrupt(i);
    } else {
      history.append(i, new Map([['a', i === 1234 ? 1000 : i === 2345 ? -1000 : 0]]));
    }
  }
  const rows = history.thinned(['a'], 0, 5000, 200);
  assert.ok(rows.length <= 220, String(rows.length));
  const values = rows.map((row) => row[1]);
  assert.ok(values.includes(1000));
  assert.ok(values.includes(-1000));
  assert.ok(values.some(Number.isNaN));
});

test('statistics are over time, not over readings', () => {
  const history = new History(10);
  history.setNames(['a']);
  history.append(0, new Map([['a', 0]]));
  history.append(9, new Map([['a', 10]]));
  assert.deepEqual(statistics(history, 'a', 0, 10), { min: 0, max: 10, mean: 1, rate: 10 / 9 });
});

test('a stretch without a value has no statistics', () => {
  const history = new History(10);
  history.setNames(['a']);
  history.interrupt(1);
  assert.deepEqual(statistics(history, 'a', 0, 9), { min: null, max: null, mean: null, rate: null });
});

test('a gap lasts from the loss to the connection', () => {
  const marks = new Marks();
  assert.equal(marks.state(1, 'connected', ''), true);
  assert.equal(marks.state(5, 'lost', 'why'), false);
  assert.equal(marks.state(6, 'lost', 'still'), false);
  assert.equal(marks.state(8, 'connected', ''), true);
  assert.deepEqual(marks.gaps, [{ from: 5, to: 8, state: 'lost', text: 'why' }]);
});

test('a command is a bar from down to up, and a press is a moment', () => {
  const marks = new Marks();
  marks.command(1, 'x', 'down');
  assert.ok(marks.isDown('x'));
  marks.command(3, 'x', 'up');
  marks.command(4, 'y', 'pressed');
  assert.ok(!marks.isDown('x'));
  assert.deepEqual(marks.presses, [{ command: 'x', from: 1, to: 3 }, { command: 'y', from: 4, to: 4 }]);
});

test('an own scale brings each series to the same height', () => {
  assert.deepEqual(scaledToOwn([[0, 10, -1], [1, 20, 1]]), [[0, 0, 0], [1, 1, 1]]);
});

test('labels stand at round numbers of seconds before now', () => {
  const labels = (from, to, width) => secondTicks(from, to, 100.7, width).map((tick) => tick.label);
  assert.deepEqual(labels(90.7, 100.7, 600), ['−10 s', '−8 s', '−6 s', '−4 s', '−2 s', 'now']);
  assert.deepEqual(labels(99.7, 99.9, 300), ['−1 s', '−0.9 s', '−0.8 s']);
});

test('CSV has a column for each series and an empty field for a gap', () => {
  assert.equal(csvText(['a', 'q,"'], [[1.23456, 0.5, NaN]]), 'time,a,"q,"""\n1.235,0.5,\n');
});

test('numbers are short, and a gap is a dash', () => {
  assert.deepEqual([0.1234567, 1234567, NaN, null].map(numberText), ['0.123457', '1234567', '–', '–']);
});

test('bounds are read from a mapping', () => {
  assert.deepEqual(boundsOf('-1..1, float'), [-1, 1]);
  assert.equal(boundsOf('from x to y'), null);
});
