// SPDX-License-Identifier: MIT
// Units: the table comes from the calculation; a number is kept as it was typed, with its unit.
let offers = null;

const unitOf = (dimension, word) => offers.units[dimension].find(unit => unit.word === word);
const toBase = (number, unit) => unit.factor * number + unit.offset;
const fromBase = (number, unit) => (number - unit.offset) / unit.factor;

// A comma before three digits: a decimal one in Russian, in English it may as well part the thousands.
const isDoubtful = text => language === 'en' && /^[-+]?[1-9]\d{0,2},\d{3}$/.test(text.trim());

/** A number as people type it: decimal comma, blanks between groups of three digits. NaN for what is none or in doubt. */
function typed(text) {
  const plain = text.trim().replace(/^([-+]?\d{1,3})((?:\s\d{3})+)(?!\d)/, (_, first, groups) => first + groups.replace(/\s/g, '')).replace(',', '.');
  return !isDoubtful(text) && /^[-+]?(\d+\.?\d*|\.\d+)(e[-+]?\d+)?$/i.test(plain) ? Number(plain) : NaN;
}

/** Decimal comma in Russian. */
const written = text => language === 'ru' ? text.replace('.', ',') : text;
const digits = (number, count = 7) =>
  number === null || number === undefined ? '–' : written(String(Number(number.toPrecision(count))));

// What the sheet prints in, and the units to choose from instead.
const dimensions = {
  mm: 'length', MPa: 'pressure', kPa: 'pressure', Pa: 'pressure', degC: 'temperature', 'uPa s': 'viscosity',
  'kg/m3': 'density', 't/h': 'flow', 'm3/h': 'flow', 'GJ/h': 'flow',
};
function choices(unit, label) {
  const dimension = dimensions[unit];
  if (!dimension) return null;
  const word = unit === 'uPa s' ? 'uPas' : unit === 'degC' ? 'C' : unit === 'm3/h' && /standard/.test(label) ? 'm3/h-std' : unit;
  const own = unitOf(dimension, word);
  const seen = new Set();
  const all = offers.units[dimension].filter(one => (dimension !== 'flow' || one.kind === own.kind) && !/^deg/.test(one.word));
  return {own, all: all.filter(one => !seen.has(one.word) && seen.add(one.word))};
}

/** A unit's word as it is shown. */
const unitText = word => t({C: 'degC', uPas: 'uPa s', mPas: 'mPa s', Pas: 'Pa s'}[word] ?? word.replace('-std', ''));
