// What the page shows, as the part of its address after "#", so that a bookmark brings it back.

export const spans = [10, 30, 60, 180, 600];

const oneOf = (value, allowed) => (allowed.includes(value) ? value : allowed[0]);

/** The view that an address names. `names` and `commands` are null if it names none. */
export function parseAddress(hash) {
  const fields = new URLSearchParams(hash.replace(/^#/, ''));
  const has = fields.has('n') || fields.has('c');
  const span = Number(fields.get('span'));
  return {
    token: fields.get('token') ?? '',
    names: has ? fields.getAll('n') : null,
    commands: has ? fields.getAll('c') : null,
    span: spans.includes(span) ? span : 30,
    plots: oneOf(fields.get('plots'), ['each', 'one']),
    scale: oneOf(fields.get('scale'), ['own', 'shared']),
    ranges: fields.getAll('range').map((text) => text.split('|')).filter((parts) => parts.length === 3),
  };
}

/** The reverse. */
export function formatAddress(view) {
  const fields = new URLSearchParams();
  if (view.token) {
    fields.set('token', view.token);
  }
  view.names.forEach((name) => fields.append('n', name));
  view.commands.forEach((command) => fields.append('c', command));
  fields.set('span', String(view.span));
  fields.set('plots', view.plots);
  fields.set('scale', view.scale);
  view.ranges.forEach((range) => fields.append('range', range.join('|')));
  return '#' + fields.toString();
}
