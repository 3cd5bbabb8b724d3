// SPDX-License-Identifier: MIT
// The two languages. English texts are the keys; in a key each number is a #, and the numbers of a text go into its translation.
const data = JSON.parse(document.getElementById('data').textContent);
let language = 'en';

const aNumber = String.raw`-?\d+(?:\.\d+)?(?:e[-+]?\d+)?`;
const unitWords = ['m3/h at standard conditions', 'kg/m3', 'm3/h', 't/h', 'GJ/h', 'MJ/m3', 'm/s', 'mol %', '1/degC', 'degC', 'MPa', 'kPa', 'Pa', 'mm', 'K', 'years'];
// A number or a range with its unit, if it has one.
const anAmount = new RegExp(String.raw`(?<!\w|-|(?<!\.)\.)(${aNumber}(?:\.\.${aNumber})?)(?: (${unitWords.join('|')})(?![\w/]))?(?!\w)`, 'g');
const aLimit = /^(.+?) # (not above|not below|below|above|exceeds|is not) #(.*)$/;
const untranslated = new Set();  // for the test of the page

function translated(text) {
  if (text in data.ru) return data.ru[text];
  const amounts = [...text.matchAll(anAmount)].map(([, number, unit]) => number.replaceAll(/(\d)\.(\d)/g, '$1,$2') + (unit ? ' ' + (data.ru[unit] ?? unit) : ''));
  const pattern = text.replace(anAmount, '#');
  const filled = translation => translation.replace(/#/g, () => amounts.shift());
  if (pattern in data.ru) return filled(data.ru[pattern]);
  if (/^[#\W]*$/.test(pattern)) return filled(pattern);
  const limit = pattern.match(aLimit);
  if (limit) return filled(`${translated(limit[1])} # ${data.ru[limit[2]]} #${limit[3] && ' ' + translated(limit[3].trim())}`);
  // Several texts in one, as they are joined by the calculation.
  for (const joint of [': ', '; ', ', '])
    if (text.includes(joint)) return text.split(joint).map(translated).join(joint);
  if (/[a-z]{3}|# [A-Za-z]/.test(pattern)) untranslated.add(text);
  return text;
}

// As print has them.
const pretty = text => text.replace(/\bdegC\b/g, '°C').replace(/\buPa s\b/g, 'µPa·s').replace(/\b(m?Pa) s\b/g, '$1·s')
  .replace(/(?<=^|[\s/,(])([kcкс]?[mм]|ft|фут)([23])(?=$|[\s/,.);])/g, (_, m, n) => m + (n === '2' ? '²' : '³'));

/** A text of the page or of the calculation in the language chosen. */
function t(text) {
  if (!text) return '';
  return pretty(language === 'ru' ? translated(text).replaceAll('GOST', 'ГОСТ') : text);
}

/** An element with attributes and children; texts are texts, never markup. */
function element(name, attributes = {}, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(attributes))
    if (key.startsWith('on')) made.addEventListener(key.slice(2), value);
    else if (value === true) made.setAttribute(key, '');
    else if (value !== false && value !== undefined) made.setAttribute(key, value);
  made.append(...children.filter(child => child !== undefined));
  return made;
}
