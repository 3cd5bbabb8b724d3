// SPDX-License-Identifier: MIT
// The form: a labelled field each, with its unit; what is wrong stands beside the field.
function setText(id, text) {
  const field = allFields().find(one => one.id === id);
  if (!field) return;
  if (field.in) {
    // "400 mm": the unit is the last word; a link may lack it.
    const words = text.trim().split(' ');
    const unit = words.length > 1 || text.startsWith(' ') ? words.at(-1) : '';
    if (unitOf(field.in, unit)) units[id] = unit;
    input[id] = unitOf(field.in, unit) ? text.slice(0, text.lastIndexOf(unit)).trim() : text.trim();
    units[id] ??= field.own ?? {length: 'mm', pressure: 'MPa', temperature: 'C', viscosity: 'uPas', density: 'kg/m3', flow: 't/h'}[field.in];
  } else if (!field.options || field.options().some(([word]) => word === text)) input[id] = text;
}

function control(field) {
  const id = 'f-' + field.id;
  if (field.options) {
    const choice = element('select', {id, onchange: event => changed(field.id, event.target.value, true)});
    for (const [word, title] of field.options()) choice.append(element('option', {value: word, selected: word === input[field.id]}, t(title)));
    return [choice];
  }
  if (field.check)
    return [element('input', {id, type: 'checkbox', checked: input[field.id] === '1', onchange: event => changed(field.id, event.target.checked ? '1' : '')})];
  if (field.sum) return [element('output', {id})];
  const box = element('input', {id, type: 'text', value: input[field.id] ?? '', inputmode: field.text ? 'text' : 'decimal', maxlength: 80,
    oninput: event => changed(field.id, event.target.value)});
  if (!field.in) return field.unit ? [box, element('span', {class: 'fixed'}, t(field.fraction && input.fractions ? '1' : field.unit))] : [box];
  const unit = element('select', {class: 'unit', 'aria-label': `${t(field.label)}: ${t('unit')}`, onchange: event => {
    units[field.id] = event.target.value;
    changed(field.id, input[field.id]);
  }});
  const words = field.difference ? offers.units[field.in].filter(one => one.word !== 'degC' && one.word !== 'degF') : choices(base(field.in), '').all;
  for (const {word} of field.in === 'flow' ? offers.units.flow : words)
    unit.append(element('option', {value: word, selected: word === units[field.id]}, unitText(word) + (/-std/.test(word) ? ' ' + t('(std)') : '')));
  return [box, unit];
}
const base = dimension => ({length: 'mm', pressure: 'Pa', temperature: 'degC', viscosity: 'uPa s', density: 'kg/m3', flow: 't/h'})[dimension];

function drawForm() {
  const form = document.getElementById('form');
  const focused = document.activeElement?.id;
  const line = element('p', {}, t('Examples: '));
  for (const [title, values] of examples)
    line.append(element('button', {type: 'button', onclick: () => restart(values)}, t(title)), ' ');
  form.replaceChildren(line);
  for (const group of groups) {
    if (group.tab && group.tab !== tab) continue;
    const set = element('fieldset', {}, element('legend', {}, t(group.title)));
    for (const field of group.fields.filter(seen)) {
      const label = element('label', {for: 'f-' + field.id}, t(field.label), field.formula ? ` ${field.formula}` : '');
      set.append(element('div', {class: field.wide ? 'field wide' : 'field', id: 'row-' + field.id}, label, element('span', {}, ...control(field))));
    }
    form.append(set);
  }
  showSum();
  if (focused) document.getElementById(focused)?.focus();
}

function showSum() {
  const sum = document.getElementById('f-sum');
  if (!sum) return;
  const total = offers.components.reduce((all, {word}) => all + (typed(input['x_' + word] ?? '') || 0), 0);
  sum.textContent = `${digits(total, 8)} ${input.fractions ? '' : t('mol %')}`;
}

/** A fault of the calculation at its field; an empty one clears all. */
function showFault(field, what) {
  for (const old of document.querySelectorAll('.fault')) old.remove();
  for (const old of document.querySelectorAll('#form [aria-invalid]')) {
    old.removeAttribute('aria-invalid');
    old.removeAttribute('aria-describedby');
  }
  if (!what) return;
  const row = document.getElementById('row-' + field) ?? document.getElementById('row-table.' + field);
  if (!row) return;
  const text = input[row.id.slice(4)] ?? '';
  const told = element('p', {class: 'fault', id: 'fault'},
    isDoubtful(text) ? `${text.trim()} ${t('may be')} ${text.trim().replace(',', '.')} ${t('or')} ${text.trim().replace(',', '')}` : t(what));
  row.append(told);
  const box = row.querySelector('input, select');
  box?.setAttribute('aria-invalid', 'true');
  box?.setAttribute('aria-describedby', 'fault');
}

/** A field got another value: keep it in the address and calculate anew. */
let waiting = 0;
function changed(id, text, redraw = false) {
  input[id] = text;
  if (redraw) drawForm();
  showSum();
  clearTimeout(waiting);
  waiting = setTimeout(() => { writeAddress(); calculate(); }, 150);
}

/** Fields that neither the address nor an example has. */
function completeInput() {
  for (const {id, options, ...field} of allFields())
    if (options) input[id] ??= options()[0][0];
    else if (field.in) setText(id, input[id] === undefined ? '' : `${input[id]} ${units[id]}`);
}

function readAddress() {
  const given = new URLSearchParams(location.hash.slice(1));
  for (const [id, text] of Object.entries({...defaults, ...Object.fromEntries(given)})) setText(id, text);
  completeInput();
  language = given.get('lang') === 'ru' || (!given.has('lang') && navigator.language.startsWith('ru')) ? 'ru' : 'en';
  tab = tabs.includes(given.get('tab')) ? given.get('tab') : 'Result';
}

function writeAddress() {
  const kept = new URLSearchParams({lang: language, tab});
  for (const field of allFields()) {
    const text = field.in ? `${input[field.id] ?? ''} ${units[field.id]}` : input[field.id] ?? '';
    const standard = defaults[field.id] ?? '';
    // A field that was emptied is not the one of the first example.
    if (seen(field) && !field.sum && text.trim() !== standard.trim() && (input[field.id] || /^\S/.test(standard))) kept.set(field.id, text);
  }
  history.replaceState(null, '', '#' + kept);
}

function clearInput() {
  for (const field of allFields()) {
    delete input[field.id];
    delete units[field.id];
  }
}

function restart(values) {
  clearInput();
  for (const [id, text] of Object.entries({...defaults, ...values})) setText(id, text);
  completeInput();
  writeAddress();
  drawForm();
  calculate();
}
