// Numbers and tables as text.

/** A number for people: six digits, or a dash for none. */
export function numberText(number) {
  if (number === null || Number.isNaN(number)) {
    return '–';
  }
  return Number.isInteger(number) ? String(number) : String(Number(number.toPrecision(6)));
}

/** A name as nodes that may break after each "/". */
export function nameNodes(name, unit = '') {
  const parts = `${name}${unit ? ` (${unit})` : ''}`.split(/(?<=[/])/);
  return parts.flatMap((part) => [part, document.createElement('wbr')]);
}

const field = (text) => (/[",\n]/.test(text) ? `"${text.replaceAll('"', '""')}"` : text);

/** Rows of [time, value, ...] as CSV; a gap is an empty field. */
export function csvText(names, rows) {
  const lines = rows.map(([time, ...values]) =>
    [time.toFixed(3), ...values.map((value) => (Number.isNaN(value) ? '' : String(value)))].join(','));
  return [['time', ...names].map(field).join(','), ...lines].join('\n') + '\n';
}

/** The bounds in a mapping like "-1..1, float"; null if it has none. */
export function boundsOf(mapping) {
  const found = /^(-?[\d.e+-]+?)\.\.(-?[\d.e+-]+)/.exec(mapping);
  const bounds = found ? [Number(found[1]), Number(found[2])] : [NaN, NaN];
  return bounds[0] < bounds[1] ? bounds : null;
}
