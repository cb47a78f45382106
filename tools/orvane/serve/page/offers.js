// What the fields for names offer while one types: names from the simulator's lists.

const patience = 150; // ms without another key

/** Not if it is too short, too long, or an element of an array, which no list has. */
export const isWorthAsking = (text) => text.length >= 2 && text.length <= 100 && !/[*?[]/.test(text);

/** `kind` is "datarefs" or "commands". The list of the input is filled. */
export function offerNames(input, kind) {
  let timer = null;
  const ask = async () => {
    const text = input.value.trim();
    const response = await fetch(`names?match=${encodeURIComponent(text)}`).catch(() => null);
    if (response?.ok && input.value.trim() === text) {
      const found = (await response.json())[kind];
      input.list.replaceChildren(...found.map((each) => new Option(each.text, each.name)));
    }
  };
  input.addEventListener('input', () => {
    clearTimeout(timer);
    if (isWorthAsking(input.value.trim())) {
      timer = setTimeout(ask, patience);
    }
  });
}
