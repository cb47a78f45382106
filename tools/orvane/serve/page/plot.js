// One plot: a Dygraph, with the gaps, the moments and the commands drawn under its curves.

/* global Dygraph */

import { nameNodes } from './texts.js';

const laneHeight = 7;

export const colourOf = (index) => getComputedStyle(document.documentElement).getPropertyValue(`--c${index % 8}`).trim();
const styled = (name) => getComputedStyle(document.documentElement).getPropertyValue(name).trim();

/** Each series between 0 and 1 of its own range in these rows. */
export function scaledToOwn(rows) {
  const count = (rows[0]?.length ?? 1) - 1;
  const bounds = Array.from({ length: count }, () => [Infinity, -Infinity]);
  for (const row of rows) {
    bounds.forEach((bound, i) => {
      const value = row[i + 1];
      if (!Number.isNaN(value)) {
        bound[0] = Math.min(bound[0], value);
        bound[1] = Math.max(bound[1], value);
      }
    });
  }
  return rows.map(([time, ...values]) => [time, ...values.map((value, i) => {
    const [least, most] = bounds[i];
    return most > least ? (value - least) / (most - least) : value - least + 0.5;
  })]);
}

/** Where labels stand: at round numbers of seconds before now. */
export function secondTicks(from, to, now, width) {
  const most = Math.max(2, width / 90);
  const steps = [0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10, 15, 30, 60, 120];
  const step = steps.find((each) => (to - from) / each <= most) ?? 300;
  const ticks = [];
  for (let i = Math.ceil((from - now) / step - 1e-6); i * step <= to - now + 1e-6; i += 1) {
    const seconds = Number((i * step).toFixed(3));
    ticks.push({ v: now + seconds, label: seconds === 0 ? 'now' : `${seconds} s`.replace('-', '−') });
  }
  return ticks;
}

export class Plot {
  /** `series` has {name, unit, index}; `on` has: hover(time), window(from, to), follow(). */
  constructor(parent, series, marks, on) {
    this.series = series;
    this.marks = marks;
    this.figure = document.createElement('figure');
    const caption = document.createElement('figcaption');
    for (const each of series) {
      const label = document.createElement('span');
      label.append(...nameNodes(each.name, each.unit));
      label.style.setProperty('--colour', `var(--c${each.index % 8})`);
      caption.append(label);
    }
    this.element = document.createElement('div');
    this.element.className = 'plot';
    this.figure.append(caption, this.element);
    parent.append(this.figure);
    this.isVisible = true;
    this.observer = new IntersectionObserver(([entry]) => { this.isVisible = entry.isIntersecting; });
    this.observer.observe(this.element);
    this.now = 0;
    this.resizing = new ResizeObserver(() => this.graph && this.graph.resize());
    this.resizing.observe(this.element);
    // Its legend has inline styles, which the policy of the page forbids; there is a table instead.
    Dygraph.PLUGINS = Dygraph.PLUGINS.filter((plugin) => plugin !== Dygraph.Plugins.Legend);
    this.graph = new Dygraph(this.element, [[0, ...series.map(() => NaN)]], {
      labels: ['time', ...series.map((each) => each.name)],
      colors: series.map((each) => colourOf(each.index)),
      stepPlot: false,
      strokeWidth: 1.6,
      axisLineColor: styled('--line'),
      gridLineColor: styled('--grid'),
      rightGap: 12,
      axes: { x: { ticker: (from, to) => secondTicks(from, to, this.now, this.width) }, y: { axisLabelWidth: 56 } },
      underlayCallback: (context, area, graph) => this.under(context, area, graph),
      highlightCallback: (_event, time) => on.hover(time),
      unhighlightCallback: () => on.hover(null),
      drawCallback: (graph) => {
        // Somebody has zoomed or moved it.
        const [from, to] = graph.xAxisRange();
        if (this.from !== undefined && (from !== this.from || to !== this.to)) {
          on.window(from, to);
        }
      },
      interactionModel: { ...Dygraph.defaultInteractionModel, dblclick: () => on.follow() },
    });
  }

  get width() {
    return this.element.clientWidth;
  }

  /** `range` is [low, high] or null for its own; without a scale no numbers stand beside the curves. */
  show(rows, from, to, now, range, hasScale) {
    Object.assign(this, { now, from, to });
    const labels = hasScale ? {} : { axes: { y: { axisLabelFormatter: () => '' } } };
    this.graph.updateOptions({ file: rows, dateWindow: [from, to], valueRange: range, ...labels });
  }

  under(context, area, graph) {
    const [from, to] = graph.xAxisRange();
    const place = (time) => graph.toDomXCoord(Math.min(Math.max(time, from), to));
    const isSeen = (begin, end) => end >= from && begin <= to;
    context.font = '12px system-ui, sans-serif';
    for (const gap of this.marks.gaps) {
      const end = gap.to ?? to;
      if (isSeen(gap.from, end)) {
        context.fillStyle = styled('--gap');
        context.fillRect(place(gap.from), area.y, Math.max(1, place(end) - place(gap.from)), area.h);
        context.fillStyle = styled('--bad');
        context.fillText(gap.state, place(gap.from) + 3, area.y + 13);
      }
    }
    for (const moment of this.marks.moments) {
      if (isSeen(moment.time, moment.time)) {
        context.fillStyle = styled('--warn');
        context.fillRect(place(moment.time), area.y, 1.5, area.h);
        context.fillText(moment.text, place(moment.time) + 4, area.y + 27);
      }
    }
    this.commands?.forEach((command, lane) => {
      context.fillStyle = colourOf(lane + 3);
      for (const press of this.marks.presses) {
        const end = press.to ?? to;
        if (press.command === command && isSeen(press.from, end)) {
          const left = place(press.from);
          context.fillRect(left, area.y + area.h - (lane + 1) * laneHeight, Math.max(3, place(end) - left), laneHeight - 2);
        }
      }
    });
  }

  /** Draws the plot with its axis labels on another canvas; returns its height. */
  drawOn(context, y) {
    const box = this.figure.getBoundingClientRect();
    const scale = (rectangle) => [rectangle.left - box.left, y + rectangle.top - box.top];
    for (const canvas of this.element.querySelectorAll('canvas')) {
      const at = canvas.getBoundingClientRect();
      context.drawImage(canvas, ...scale(at), at.width, at.height);
    }
    context.textBaseline = 'top';
    for (const label of this.figure.querySelectorAll('.dygraph-axis-label, figcaption span')) {
      const isCaption = label.parentElement.tagName === 'FIGCAPTION';
      const range = document.createRange();
      range.selectNodeContents(label);
      context.font = isCaption ? '13px system-ui, sans-serif' : '12px system-ui, sans-serif';
      context.fillStyle = isCaption ? getComputedStyle(label).getPropertyValue('--colour') : styled('--quiet');
      context.fillText(label.textContent, ...scale(range.getBoundingClientRect()));
    }
    return box.height;
  }

  remove() {
    this.observer.disconnect();
    this.resizing.disconnect();
    this.graph.destroy();
    this.figure.remove();
  }
}
