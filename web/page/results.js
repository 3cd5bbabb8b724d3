// SPDX-License-Identifier: MIT
// What the calculation answers, as tables and curves.
const tabs = ['Result', 'Check', 'Uncertainty', 'Curves', 'Properties', 'Verify'];
let tab = 'Result';
const shownIn = {};  // unit chosen for a row of the sheet, by label

let kalorfix = null;
const ask = (name, ...texts) => JSON.parse(kalorfix.ccall(name, 'string', texts.map(() => 'string'), texts));

function summary(text, refused = false) {
  const place = document.getElementById('summary');
  place.textContent = text;
  place.className = refused ? 'refused' : '';
}

function faulty(answer, panel) {
  showFault(answer.field, answer.fault);
  if (!answer.fault) return false;
  const field = allFields().find(one => one.id === answer.field || one.id === 'table.' + answer.field);
  const told = document.getElementById('fault')?.textContent ?? t(answer.fault);
  summary(`${t(field?.label ?? answer.field)}: ${told}`, true);
  panel.replaceChildren();
  return true;
}

// ---- The sheet --------------------------------------------------------------------------------------------------------------------
function valueCells(cell) {
  if (cell.text) return [element('td', {colspan: 2}, t(cell.text))];
  const offered = cell.unit && choices(cell.unit, cell.label);
  if (!offered) return [element('td', {class: 'number'}, written(cell.shown)), element('td', {}, t(cell.unit ?? ''))];
  const number = element('td', {class: 'number'});
  const show = word => {
    const unit = offered.all.find(one => one.word === word) ?? offered.own;
    number.textContent = unit === offered.own ? written(cell.shown) : digits(fromBase(toBase(cell.value, offered.own), unit));
  };
  const choice = element('select', {'aria-label': `${t(cell.label)}: ${t('unit')}`, onchange: event => {
    shownIn[cell.label] = event.target.value;
    show(event.target.value);
  }});
  const chosen = shownIn[cell.label] ?? offered.own.word;
  for (const {word} of offered.all) choice.append(element('option', {value: word, selected: word === chosen}, unitText(word)));
  show(chosen);
  return [number, element('td', {}, choice)];
}

function flowText(answer) {
  const unit = ['t/h', 'm3/h', 'm3/h at standard conditions', 'GJ/h'][flowKind()];
  if (is('unknown', 'bore')) return `${t('bore at 20 degC')}: ${digits(answer.bore)} ${t('mm')}`;
  if (is('unknown', 'dp')) return `${t('differential pressure')}: ${digits(answer.dp / 1000)} ${t('kPa')}`;
  return `${digits(answer.flow)} ${t(unit)}`;
}

function judge(answer) {
  const solved = answer.status === 'solved';
  summary(solved ? flowText(answer) : `${t('not solved')}: ${t(answer.why)}`, !solved);
  return solved;
}

function showResult(panel) {
  const answer = ask('page_solve', lines());
  if (faulty(answer, panel)) return;
  judge(answer);
  const body = element('tbody');
  for (const cell of answer.cells)
    if (cell.heading) body.append(element('tr', {class: 'step'}, element('th', {scope: 'row', colspan: 3}, `${t(cell.heading)}: ${t(cell.text)}`)));
    else body.append(element('tr', {}, element('th', {scope: 'row'}, t(cell.label)), ...valueCells(cell)));
  if (answer.status !== 'solved')
    body.append(element('tr', {class: 'STOP'}, element('th', {scope: 'row'}, t('not solved')), element('td', {colspan: 2}, t(answer.why))));
  panel.replaceChildren(printed(), element('table', {id: 'sheet'}, element('caption', {}, t('Sheet of the reading')), body));
}

const printed = () => element('p', {}, element('b', {}, input.name ?? ''), input.name ? ': ' : '', t(device().title), ', ',
  t(groups[2].fields[0].options().find(([word]) => word === input.medium)[1]), ' ', element('button', {type: 'button', onclick: () => print()}, t('Print')));

// ---- The check --------------------------------------------------------------------------------------------------------------------
function showCheck(panel) {
  if (is('unknown', 'bore')) {
    panel.replaceChildren();
    return summary(t('a check needs the bore: choose another quantity to be found'), true);
  }
  const answer = ask('page_check', lines());
  if (faulty(answer, panel)) return;
  const count = verdict => answer.rules.filter(rule => rule.verdict === verdict).length;
  summary(`${t('OK')} ${count('OK')}, ${t('WARN')} ${count('WARN')}, ${t('STOP')} ${count('STOP')}`, count('STOP') > 0);
  const body = element('tbody');
  for (const {verdict, what, value, limit, clause} of answer.rules)
    body.append(element('tr', {class: verdict}, element('td', {class: 'verdict'}, t(verdict)), element('th', {scope: 'row'}, t(what)),
      element('td', {}, t(value)), element('td', {}, t(limit)), element('td', {}, t(clause))));
  const head = element('tr', {}, ...['verdict', 'rule', 'value', 'limit', 'source'].map(text => element('th', {scope: 'col'}, t(text))));
  panel.replaceChildren(printed(), element('table', {id: 'rules'}, element('caption', {}, t('Limits of the metering point')), element('thead', {}, head), body));
}

// ---- Uncertainty ------------------------------------------------------------------------------------------------------------------
/** A bar of a share in per cent; its number stands beside it. */
function bar(share) {
  const made = document.createElementNS('http://www.w3.org/2000/svg', 'svg');
  for (const [key, value] of Object.entries({width: 120, height: 12, class: 'bar', 'aria-hidden': 'true'})) made.setAttribute(key, value);
  const inside = document.createElementNS('http://www.w3.org/2000/svg', 'rect');
  for (const [key, value] of Object.entries({width: 1.2 * share, height: 12})) inside.setAttribute(key, value);
  made.append(inside);
  return made;
}

/** With the decimals of the tool. */
const percent = (number, decimals) => `${written(number.toFixed(decimals))} %`;
const expandedText = flow => flow.expanded === null ? t('not computed') : `${flow.bound ? t('at least') + ' ' : ''}${percent(flow.expanded, 3)}`;

/** The keys of the station file as the form calls them. */
const fieldNames = keys => keys.split(', or ').map(some => some.split(/ with |, /).map(key => {
  const field = allFields().find(one => one.id === key);
  return field ? `“${t(field.label)}”` : key;
}).join(', ')).join(` ${t('or')} `);

function budgetTable(flow) {
  const body = element('tbody');
  for (const one of flow.entries) {
    const name = element('th', {scope: 'row'}, t(one.name));
    if (one.uncertainty === undefined)
      body.append(element('tr', {class: one.standing === 'outside' ? 'STOP' : 'WARN'}, name, element('td', {colspan: 5}, t(one.standing) + ': ' +
        (one.standing === 'outside' ? t(one.source) : fieldNames(one.source)))));
    else body.append(element('tr', {}, name, element('td', {}, t(one.value)), element('td', {class: 'number'}, t(one.uncertainty)),
      element('td', {class: 'number'}, percent(one.contribution, 3)), element('td', {}, ...(flow.expanded === null ? [] : [bar(one.share), ` ${percent(one.share, 1)}`])), element('td', {}, t(one.source))));
  }
  const heads = ['input', 'value', 'uncertainty', 'contributes', 'share', 'source'].map(head => element('th', {scope: 'col'}, t(head)));
  return element('table', {class: 'budget'}, element('caption', {}, `${t(flow.title)}, ${digits(flow.value)} ${t(flow.unit)}: ${expandedText(flow)}`),
    element('thead', {}, element('tr', {}, ...heads)), body);
}

function showUncertainty(panel) {
  const answer = ask('page_uncertainty', lines());
  if (faulty(answer, panel)) return;
  if (answer.refused) {
    panel.replaceChildren();
    return summary(`${t('not solved')}: ${t(answer.refused)}`, true);
  }
  summary(answer.flows.map(flow => `${t(flow.title)}: ${expandedText(flow)}`).join('; '));
  panel.replaceChildren(printed(), element('p', {}, t('Expanded uncertainties, 95 %, k = 2. What is not stated counts as 0, and the whole is then a lower bound.')),
    ...answer.flows.map(budgetTable), ...answer.notes.map(note => element('p', {}, t(note))));
}

// ---- Curves -----------------------------------------------------------------------------------------------------------------------
function curve(title, xLabel, yLabel, x, y) {
  const place = element('div', {class: 'chart', role: 'img', 'aria-label': `${title}: ${x.length} ${t('points')}, ${xLabel} ${digits(x[0], 4)}..${digits(x.at(-1), 4)}`});
  const width = Math.min(document.getElementById('panel').clientWidth - 8, 800);
  const axis = (label, size) => ({label, size, values: (_, ticks) => ticks.map(tick => digits(tick, 6))});
  new uPlot({width, height: Math.round(width * 0.55) + 60, title, scales: {x: {time: false}}, axes: [axis(xLabel, 45), axis(yLabel, 80)],
    series: [{label: xLabel, value: (_, v) => digits(v, 6)}, {label: yLabel, stroke: '#0b5394', width: 2, value: (_, v) => digits(v, 6)}]}, [x, y], place);
  const rows = x.map((value, k) => [value, y[k]]).filter((_, k) => k % 30 === 0);
  const body = element('tbody', {}, ...rows.map(row => element('tr', {}, ...row.map(value => element('td', {class: 'number'}, digits(value, 6))))));
  const head = element('tr', {}, element('th', {scope: 'col'}, xLabel), element('th', {scope: 'col'}, yLabel));
  return [place, element('details', {}, element('summary', {}, t('as a table')), element('table', {}, element('thead', {}, head), body))];
}

function showCurves(panel) {
  const answer = ask('page_solve', lines() + '\ncurves 1');
  if (faulty(answer, panel) || !judge(answer)) return panel.replaceChildren();
  const flow = t(['mass flow, t/h', 'volume flow, m3/h', 'flow at standard conditions, m3/h', 'energy flow, GJ/h'][flowKind()]);
  const dp = answer.over_dp, p = answer.over_p;
  panel.replaceChildren(printed(),
    ...curve(t('flow over differential pressure'), t('differential pressure, kPa'), flow, dp.x.map(x => x / 1e3), dp.y),
    ...curve(t('flow over pressure, same differential pressure'), t('absolute pressure, MPa'), flow, p.x.map(x => x / 1e6), p.y),
    ...curve(t('density over pressure'), t('absolute pressure, MPa'), t('density, kg/m3'), p.x.map(x => x / 1e6), p.density));
}

// ---- Properties -------------------------------------------------------------------------------------------------------------------
function showProperties(panel) {
  if (is('medium', 'given')) {
    panel.replaceChildren();
    return summary(t('the properties of this medium are given'), true);
  }
  const answer = ask('page_table', lines('table.'));
  if (faulty(answer, panel)) return;
  const vnic = is('method', 'vnic');
  const heat = vnic ? offers.heats.find(one => one.word === input.heat).title : 'MJ/m3 at 20 degC';
  const columns = gas()
    ? [['K', 'K'], ['Z', 'Z'], ['rho', 'density', 'kg/m3'], ['mu', 'viscosity', 'uPa s'], ['kappa', 'kappa'], ['rho_c', 'density at standard conditions', 'kg/m3'],
       ['lower', 'lower heat', heat], ['higher', 'higher heat', heat]]
    : [['phase', 'phase'], ['rho', 'density', 'kg/m3'], ['mu', 'viscosity', 'uPa s'], ['h', 'enthalpy', 'kJ/kg'], ['kappa', 'kappa'], ['ps', 'saturation pressure', 'Pa']];
  const [unitT, unitP] = [unitOf('temperature', units['table.t_from']), unitOf('pressure', units['table.p_from'])];
  const body = element('tbody');
  for (const row of answer.rows) {
    const line = element('tr', {}, element('td', {class: 'number'}, digits(fromBase(row.t, unitT))), element('td', {class: 'number'}, digits(fromBase(row.p, unitP))));
    if (row.refused) line.append(element('td', {class: 'refused', colspan: columns.length}, `${t('refused')}: ${t(row.refused)}`));
    else for (const [key] of columns)
      line.append(key === 'phase' ? element('td', {}, t(row.phase)) : element('td', {class: 'number'}, digits(row[key])));
    body.append(line);
  }
  const heads = [['', 'temperature', unitT.word], ['', 'absolute pressure', unitP.word], ...columns];
  const head = element('tr', {}, ...heads.map(([, title, unit]) => element('th', {scope: 'col'}, t(title) + (unit ? `, ${unitText(unit)}` : ''))));
  summary(`${answer.rows.length} ${t('states')}`);
  const title = gas() ? offers.methods.find(one => one.word === input.method).title : 'IAPWS-95';
  panel.replaceChildren(printed(), element('table', {id: 'properties'}, element('caption', {}, `${t('Properties')}, ${title}`), element('thead', {}, head), body));
}
