// The readings of the last minutes, for all series: a ring of rows with preallocated columns, so that
// the page does not grow. Values hold until the next row; NaN is a gap.

export class History {
  constructor(capacity = 38000) {
    this.capacity = capacity;
    this.times = new Float64Array(capacity);
    this.begin = 0;
    this.size = 0;
    this.columns = new Map();
    this.latest = new Map();
  }

  /** Keeps the past of series that stay, and drops the others. */
  setNames(names) {
    for (const name of this.columns.keys()) {
      if (!names.includes(name)) {
        this.columns.delete(name);
        this.latest.delete(name);
      }
    }
    for (const name of names) {
      if (!this.columns.has(name)) {
        this.columns.set(name, new Float64Array(this.capacity).fill(NaN));
      }
    }
  }

  /** A reading: the new values by name. The others stay as they were. */
  append(time, changes) {
    changes.forEach((value, name) => this.latest.set(name, value));
    this.add(time);
  }

  /** From here on nothing is known. */
  interrupt(time) {
    this.latest.clear();
    this.add(time);
  }

  add(time) {
    const last = this.place(this.size - 1);
    // A clock never runs backwards, and two rows of one moment are one.
    const isSame = this.size > 0 && time <= this.times[last];
    if (!isSame && this.size === this.capacity) {
      this.begin = (this.begin + 1) % this.capacity;
      this.size -= 1;
    }
    const place = isSame ? last : this.place(this.size);
    if (!isSame) {
      this.times[place] = time;
      this.size += 1;
    }
    for (const [name, column] of this.columns) {
      column[place] = this.latest.get(name) ?? NaN;
    }
  }

  place(index) {
    return (this.begin + index + this.capacity) % this.capacity;
  }

  get lastTime() {
    return this.size > 0 ? this.times[this.place(this.size - 1)] : 0;
  }

  /** The index of the last row at or before a time; -1 before the first. */
  indexAt(time) {
    let low = 0;
    let high = this.size;
    while (low < high) {
      const middle = (low + high) >> 1;
      if (this.times[this.place(middle)] <= time) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    return low - 1;
  }

  valueAt(name, time) {
    const index = this.indexAt(time);
    const column = this.columns.get(name);
    return index < 0 || !column ? NaN : column[this.place(index)];
  }

  /** [time, value, ...] for each row of a stretch, with the row before it. */
  rows(names, from, to) {
    const result = [];
    const columns = names.map((name) => this.columns.get(name));
    const end = this.indexAt(to);
    for (let i = Math.max(0, this.indexAt(from)); i <= end; i += 1) {
      const place = this.place(i);
      result.push([this.times[place], ...columns.map((column) => column?.[place] ?? NaN)]);
    }
    return result;
  }

  /** The same, thinned out to about `most` rows that keep the extremes and the gaps. */
  thinned(names, from, to, most) {
    const first = Math.max(0, this.indexAt(from));
    const end = this.indexAt(to) + 1;
    if (end - first <= most) {
      return this.rows(names, from, to);
    }
    const columns = names.map((name) => this.columns.get(name));
    // Groups that do not depend on where the stretch begins, so that the curve does not tremble.
    const width = Math.ceil((end - first) / (most / 2));
    const seconds = (width * (to - from)) / (end - first);
    const result = [];
    for (let i = first; i < end;) {
      const group = Math.floor(this.times[this.place(i)] / seconds);
      const low = [this.times[this.place(i)]];
      const begin = i;
      while (i < end && Math.floor(this.times[this.place(i)] / seconds) === group) {
        i += 1;
      }
      const high = [this.times[this.place(i - 1)]];
      for (const column of columns) {
        let least = Infinity;
        let most_ = -Infinity;
        for (let row = begin; row < i; row += 1) {
          const value = column?.[this.place(row)] ?? NaN;
          if (Number.isNaN(value)) {
            least = most_ = NaN;
            break;
          }
          least = value < least ? value : least;
          most_ = value > most_ ? value : most_;
        }
        low.push(least);
        high.push(most_);
      }
      result.push(low);
      if (high[0] > low[0]) {
        result.push(high);
      }
    }
    return result;
  }
}

/** Minimum, maximum, mean over time and rate per second of a stretch; all null without a value. */
export function statistics(history, name, from, to) {
  const rows = history.rows([name], from, to);
  const result = { min: null, max: null, mean: null, rate: null };
  let area = 0;
  let covered = 0;
  let first = null;
  let last = null;
  rows.forEach(([time, value], i) => {
    if (Number.isNaN(value)) {
      return;
    }
    const begin = Math.max(time, from);
    const end = Math.max(begin, Math.min(to, i + 1 < rows.length ? rows[i + 1][0] : to));
    result.min = result.min === null ? value : Math.min(result.min, value);
    result.max = result.max === null ? value : Math.max(result.max, value);
    area += value * (end - begin);
    covered += end - begin;
    first = first ?? { time: begin, value };
    last = { time: begin, value };
  });
  if (first) {
    result.mean = covered > 0 ? area / covered : last.value;
    result.rate = last.time > first.time ? (last.value - first.value) / (last.time - first.time) : 0;
  }
  return result;
}
