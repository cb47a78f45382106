// The table of all series: their values at a moment, what they did in the visible stretch, and how to
// set them.

import { statistics } from './history.js';
import { nameNodes, numberText } from './texts.js';

const columns = ['Min', 'Max', 'Mean', 'Rate /s'];

const make = (tag, properties = {}) => Object.assign(document.createElement(tag), properties);

export class ValueTable {
  /** `on` has: set(series, text), drop(series), range(series, low, high). */
  constructor(table, on) {
    this.table = table;
    this.body = table.tBodies[0];
    this.caption = table.caption;
    this.on = on;
    this.rows = new Map();
  }

  setSeries(series, ranges) {
    this.body.replaceChildren();
    this.rows.clear();
    series.forEach((each) => this.add(each, ranges.find(([name]) => name === each.name)));
  }

  add(series, range) {
    const row = this.body.insertRow();
    row.dataset.name = series.name;
    const name = row.insertCell();
    name.append(...nameNodes(series.name, series.unit));
    name.style.setProperty('--colour', `var(--c${series.index % 8})`);
    const value = row.insertCell();
    value.className = 'value';
    value.dataset.label = 'Value';
    const figures = columns.map((label) => {
      const cell = row.insertCell();
      cell.dataset.label = label;
      return cell;
    });
    const set = row.insertCell();
    set.className = 'set';
    const control = this.control(series, range);
    set.append(control.form);
    const drop = make('button', { type: 'button', textContent: '×', title: `Drop ${series.argument}` });
    drop.setAttribute('aria-label', `Drop ${series.argument}`);
    drop.onclick = () => this.on.drop(series);
    const last = row.insertCell();
    last.className = 'drop';
    last.append(drop);
    this.rows.set(series.name, { value, figures, control, text: '' });
  }

  // A field; beside it a switch for ints, or a slider if it has a range.
  control(series, range) {
    const form = make('form');
    const input = make('input', { type: 'text', name: 'value', autocomplete: 'off', placeholder: 'value' });
    input.setAttribute('aria-label', `Set ${series.name}`);
    input.title = 'A value, or a range such as -1..1 for a slider';
    form.append(input, make('button', { textContent: 'Set' }));
    form.onsubmit = (event) => {
      event.preventDefault();
      const bounds = /^\s*(-?[\d.]+)\.\.(-?[\d.]+)\s*$/.exec(input.value);
      if (bounds) {
        this.on.range(series, bounds[1], bounds[2]);
      } else if (input.value.trim() !== '') {
        this.on.set(series, input.value.trim());
        input.value = '';
      }
    };
    let slider = null;
    let toggle = null;
    if (range) {
      const step = series.type === 'int' ? 1 : (Number(range[2]) - Number(range[1])) / 200;
      slider = make('input', { type: 'range', min: range[1], max: range[2], step });
      slider.setAttribute('aria-label', `Slide ${series.name}`);
      slider.oninput = () => this.on.set(series, slider.value);
      form.prepend(slider);
    } else if (series.type === 'int') {
      toggle = make('input', { type: 'checkbox' });
      toggle.setAttribute('role', 'switch');
      toggle.setAttribute('aria-label', `Switch ${series.name}`);
      toggle.onchange = () => this.on.set(series, toggle.checked ? '1' : '0');
      form.prepend(toggle);
    }
    return { form, slider, toggle };
  }

  show(history, moment, from, to, isAlive) {
    for (const [name, row] of this.rows) {
      const value = history.valueAt(name, moment);
      this.put(row.value, numberText(value));
      const found = statistics(history, name, from, to);
      [found.min, found.max, found.mean, found.rate].forEach((number, i) => this.put(row.figures[i], numberText(number)));
      if (row.control.toggle && isAlive) {
        row.control.toggle.checked = value !== 0 && !Number.isNaN(value);
      }
      if (row.control.slider && isAlive && document.activeElement !== row.control.slider && !Number.isNaN(value)) {
        row.control.slider.value = value;
      }
    }
  }

  put(cell, text) {
    if (cell.textContent !== text) {
      cell.textContent = text;
    }
  }
}
