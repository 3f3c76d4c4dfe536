// Where the pins of a package are, by their names.

// Rows of a ball grid: letters that are easily taken for a digit or for each other are left out.
const LETTERS = 'ABCDEFGHJKLMNPRTUVWY';
const BALL = /^([A-Z]{1,2})0*([1-9]\d{0,2})$/i;
const LEAD = /^0*([1-9]\d{0,4})$/;

function rowNumber(letters) {
  let number = 0;
  for (const letter of letters.toUpperCase()) {
    const digit = LETTERS.indexOf(letter);
    if (digit < 0) return null;
    number = number * LETTERS.length + digit + 1;
  }
  return number;
}

function rowName(number) {
  let letters = '';
  for (let rest = number; rest > 0; rest = Math.floor((rest - 1) / LETTERS.length))
    letters = LETTERS[(rest - 1) % LETTERS.length] + letters;
  return letters;
}

function ballOf(text) {
  const found = BALL.exec(text);
  const row = found && rowNumber(found[1]);
  return row ? { row, column: Number(found[2]) } : null;
}

function range(count) {
  return Array.from({ length: count }, (_, i) => i + 1);
}

// Two pins at one place cannot both be drawn.
function apart(places) {
  const seen = new Set();
  return places.map((place) => {
    const key = place && `${place.x} ${place.y}`;
    if (!place || seen.has(key)) return null;
    seen.add(key);
    return place;
  });
}

function grid(balls) {
  const known = balls.filter(Boolean);
  const rows = Math.max(...known.map((ball) => ball.row));
  const columns = Math.max(...known.map((ball) => ball.column));
  return {
    kind: 'grid',
    places: apart(balls.map((ball) => ball && { x: ball.column, y: ball.row })),
    columns: range(columns).map((x) => ({ x, y: 0, text: String(x) })),
    rows: range(rows).map((y) => ({ x: 0, y, text: rowName(y) })),
    body: { x: 0.4, y: 0.4, width: columns + 0.2, height: rows + 0.2 },
    left: -0.9,
    top: -0.9,
    width: columns + 2.5,
    height: rows + 2.5,
  };
}

// Leads run round the body against the clock, from the upper left; one more than a multiple of
// four is a pad below it.
function ring(numbers) {
  const last = Math.max(...numbers.filter(Boolean));
  const pad = last % 4 === 1 && last > 4 ? last : null;
  const side = Math.ceil((pad ? last - 1 : last) / 4);
  const placeOf = (number) => {
    if (!number) return null;
    if (number === pad) return { x: (side + 1) / 2, y: (side + 1) / 2 };
    const along = ((number - 1) % side) + 1;
    const far = side + 1;
    return [
      { x: 0, y: along },
      { x: along, y: far },
      { x: far, y: far - along },
      { x: far - along, y: 0 },
    ][Math.floor((number - 1) / side)];
  };
  const all = range(pad ? last - 1 : last);
  const label = (number) => {
    const { x, y } = placeOf(number);
    const far = side + 1;
    return { x: x === 0 ? -1 : x === far ? far + 1 : x, y: y === 0 ? -1 : y === far ? far + 1 : y };
  };
  const step = side > 12 ? 5 : 1;
  return {
    kind: 'ring',
    places: apart(numbers.map(placeOf)),
    columns: [],
    rows: all
      .filter((number) => number === 1 || number % step === 0)
      .map((number) => ({ ...label(number), text: String(number) })),
    body: { x: 0.7, y: 0.7, width: side - 0.4, height: side - 0.4 },
    left: -1.8,
    top: -1.8,
    width: side + 4.6,
    height: side + 4.6,
    empty: all.map(placeOf),
  };
}

// The plan of a package: a place for each name that has one, in the order of the names, and what
// is drawn around. Null when the names are those of no grid and no ring.
export function planOf(names) {
  const texts = names.map((text) => text ?? '');
  const balls = texts.map(ballOf);
  const numbers = texts.map((text) => Number(LEAD.exec(text)?.[1] ?? 0));
  const enough = texts.filter(Boolean).length * 0.9;
  const fits = (list) => list.filter(Boolean).length >= Math.max(enough, 1);
  if (fits(balls) && sane(grid(balls))) return grid(balls);
  if (fits(numbers) && sane(ring(numbers))) return ring(numbers);
  return null;
}

// Names that leave nearly all places empty are names of something else, but for a file that lists
// some pins of a usual package, such as those of its test access port alone.
function sane(plan) {
  const taken = plan.places.filter(Boolean).length;
  const room = plan.kind === 'grid' ? plan.rows.length * plan.columns.length : plan.empty.length;
  return room <= 600 + taken * 16;
}
