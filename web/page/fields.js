// SPDX-License-Identifier: MIT
// The fields of the form, and the input as it stands: texts by field, units by field.
const input = {};

const is = (id, ...values) => values.includes(input[id]);
const device = () => offers.devices.find(one => one.word === input.device) ?? offers.devices[0];
const byDensity = () => is('method', 'nx19', 'gerg91');
const gas = () => is('medium', 'gas');
const composed = () => gas() && !byDensity();
const pairs = table => table.map(one => [one.word, one.title]);
const metals = () => offers.materials.map((m, k) => [String(k + 1),
  `${k + 1} (${(m.at20 * 1e6).toFixed(2)}e-6 1/degC; ${m.low}..${m.high} degC)`]);

const groups = [
  {title: 'Metering point', fields: [
    {id: 'name', label: 'name', text: true, wide: true},
    {id: 'unknown', label: 'to be found', options: () => [['flow', 'the flow'], ['dp', 'the differential pressure'], ['bore', 'the bore (sizing)']]},
  ]},
  {title: 'Pipe and device', fields: [
    {id: 'device', label: 'device', wide: true, options: () => pairs(offers.devices)},
    {id: 'D20', label: 'pipe at 20 degC', in: 'length'},
    {id: 'd20', label: 'device at 20 degC', in: 'length', when: () => !is('unknown', 'bore')},
    {id: 'expansion', label: 'thermal expansion', options: () => [['materials', 'by material'], ['coefficients', 'by coefficient']]},
    {id: 'material_D', label: 'material of the pipe', wide: true, options: metals, when: () => is('expansion', 'materials')},
    {id: 'material_d', label: 'material of the device', wide: true, options: metals, when: () => is('expansion', 'materials')},
    {id: 'expansion_D', label: 'expansion of the pipe', unit: '1/degC', when: () => is('expansion', 'coefficients')},
    {id: 'expansion_d', label: 'expansion of the device', unit: '1/degC', when: () => is('expansion', 'coefficients')},
    {id: 'roughness', label: 'equivalent roughness of the pipe', in: 'length'},
    {id: 'edge', label: 'initial radius of the edge', in: 'length', when: () => device().orifice},
    {id: 'interval', label: 'interval between checks', unit: 'years', when: () => device().orifice},
    {id: 'edge_at_end', label: 'radius at the end of the interval, not its mean', check: true, when: () => device().orifice},
    {id: 'alpha', label: 'flow coefficient', unit: '', when: () => device().configured},
    {id: 'coarse', label: 'metering class 0 (flow to 1e-3)', check: true},
  ]},
  {title: 'Medium', fields: [
    {id: 'medium', label: 'medium', options: () => [['gas', 'natural gas'], ['water', 'water and steam'], ['given', 'properties given']]},
    {id: 'method', label: 'method', options: () => pairs(offers.methods), when: gas},
    {id: 'rho_c', label: 'density at standard conditions', in: 'density', when: () => gas() && byDensity()},
    {id: 'n2', label: 'nitrogen', unit: 'mol %', when: () => gas() && byDensity()},
    {id: 'co2', label: 'carbon dioxide', unit: 'mol %', when: () => gas() && byDensity()},
    {id: 'fractions', label: 'volume fractions in place of mol %', check: true, when: composed},
    ...Array.from({length: 15}, (_, k) => ({component: k, when: composed})),
    {id: 'sum', label: 'sum', sum: true, when: composed},
    {id: 'vapour', label: 'water vapour', in: 'density', when: gas},
    {id: 'heat', label: 'heats of combustion', options: () => pairs(offers.heats), when: () => gas() && is('method', 'vnic')},
    {id: 'higher', label: 'energy by the higher heat', check: true, when: gas},
    {id: 'phase', label: 'phase', options: () => pairs(offers.phases).map(([word, title]) => [word, word === 'from_state' ? 'from the state' : title]), when: () => is('medium', 'water')},
    {id: 'x', label: 'share of the single phase', unit: '', when: () => is('medium', 'water') && is('phase', 'wet_steam', 'from_state')},
    {id: 'rho', label: 'density', in: 'density', when: () => is('medium', 'given')},
    {id: 'mu', label: 'dynamic viscosity', in: 'viscosity', when: () => is('medium', 'given')},
    {id: 'kappa', label: 'isentropic exponent (none: a liquid)', unit: '', when: () => is('medium', 'given')},
    {id: 'rho_std', label: 'density at standard conditions', in: 'density', when: () => is('medium', 'given')},
  ]},
  {title: 'Reading', fields: [
    {id: 't', label: 'temperature', in: 'temperature'},
    {id: 'p', label: 'absolute pressure', in: 'pressure'},
    {id: 'dp', label: 'differential pressure', in: 'pressure', when: () => !is('unknown', 'dp')},
    {id: 'q', label: 'flow', in: 'flow', when: () => !is('unknown', 'flow')},
    {id: 'column', label: 'liquid column', unit: 'm'},
    {id: 'column_rho', label: 'density of the column', in: 'density'},
  ]},
  {title: 'Ranges, for the check', fields: [
    {id: 't_low', label: 'temperature from', in: 'temperature'}, {id: 't_high', label: 'up to', in: 'temperature'},
    {id: 'p_low', label: 'absolute pressure from', in: 'pressure'}, {id: 'p_high', label: 'up to', in: 'pressure'},
    {id: 'dp_low', label: 'differential pressure from', in: 'pressure'}, {id: 'dp_high', label: 'up to', in: 'pressure'},
  ]},
  {title: 'Instruments: expanded uncertainties (95 %)', tab: 'Uncertainty', fields: []},
  {title: 'Table of properties', tab: 'Properties', fields: [
    {id: 'table.t_from', label: 'temperature from', in: 'temperature'}, {id: 'table.t_to', label: 'up to', in: 'temperature'},
    {id: 'table.t_step', label: 'step', in: 'temperature', difference: true},
    {id: 'table.p_from', label: 'absolute pressure from', in: 'pressure'}, {id: 'table.p_to', label: 'up to', in: 'pressure'},
    {id: 'table.p_step', label: 'step', in: 'pressure', difference: true},
  ]},
];

/** Once the calculation has said what there is. */
function completeFields() {
  for (const group of groups)
    for (const field of group.fields)
      if (field.component !== undefined) {
        const {word, title} = offers.components[field.component];
        Object.assign(field, {id: 'x_' + word, label: word.replaceAll('_', ' '), formula: title, unit: 'mol %', fraction: true});
      }
  const transmitters = {dp: 'differential pressure', p: 'absolute pressure', t: 'temperature'};
  const parts = {range: 'range', class: 'class, of the range', error: 'or an error'};
  for (const {word, title, unit, ...media} of offers.instruments) {
    const [of, part] = word.split('_');
    const label = of in transmitters ? `${transmitters[of]}: ${parts[part]}` : title.replace(/^(gas|water and steam): /, '');
    const field = {id: word, label, when: () => gas() ? media.gas : media.heat};
    groups.find(group => group.tab === 'Uncertainty').fields.push(Object.assign(field, /Pa$/.test(unit) ? {in: 'pressure', own: unit} : {unit}));
  }
}

const allFields = () => groups.flatMap(group => group.fields);
const seen = field => !field.when || field.when();
const units = {};  // by field

/** The lines that the calculation reads: what is seen of the form, in base units; `prefix` chooses a table's own fields. */
function lines(prefix = '') {
  const out = [];
  for (const field of allFields()) {
    const isTable = field.id.startsWith('table.');
    const value = (input[field.id] ?? '').replace(/[\u0000-\u001f]/g, ' ').trim();
    if (!seen(field) || field.text || field.sum || value === '' || (isTable ? !prefix : prefix && field.in && isReading(field.id)))
      continue;
    const key = isTable ? field.id.slice(6) : field.id;
    const number = field.options || field.check ? NaN : typed(value);
    if (Number.isNaN(number)) out.push(`${key} ${value}`);
    else if (!field.in) out.push(`${key} ${number}`);
    else {
      const unit = unitOf(field.in, units[field.id]);
      out.push(`${key} ${field.difference ? number * unit.factor : toBase(number, unit)}`);
    }
  }
  out.push('kind ' + ['mass', 'volume', 'standard_volume', 'energy'][flowKind()]);
  return out.join('\n');
}
/** Which flow is asked for or given: 0 mass, 1 volume, 2 at standard conditions, 3 energy. */
function flowKind() {
  if (!is('unknown', 'flow')) return unitOf('flow', units.q).kind;
  return gas() || (is('medium', 'given') && input.kappa && input.rho_std) ? 2 : 0;
}
const isReading = id => groups[3].fields.some(field => field.id === id);

const defaults = {
  unknown: 'flow', device: 'nozzle_isa1932', D20: '300 mm', d20: '180 mm', expansion: 'materials', material_D: '7', material_d: '32',
  expansion_D: '', expansion_d: '', roughness: '0.1 mm', edge: '0.05 mm', interval: '1', medium: 'water', method: 'gerg91',
  rho_c: '0.6799 kg/m3', n2: '0.8858', co2: '0.0668', vapour: ' kg/m3', heat: 'kJ20', phase: 'from_state', x: '',
  rho: ' kg/m3', mu: ' uPas', rho_std: ' kg/m3', t: '300 C', p: '1.2 MPa', dp: '40 kPa', q: '57.0274 t/h', column: '', column_rho: ' kg/m3',
  t_low: '280 C', t_high: '320 C', p_low: '1 MPa', p_high: '1.4 MPa', dp_low: '4 kPa', dp_high: '63 kPa',
  'table.t_from': '250 C', 'table.t_to': '350 C', 'table.t_step': '25 C', 'table.p_from': '1 MPa', 'table.p_to': '1.4 MPa', 'table.p_step': '0.2 MPa',
};
const examples = [
  ['steam, nozzle', {}],
  ['natural gas, orifice plate', {
    device: 'orifice_flange', D20: '400 mm', d20: '220 mm', roughness: '0.05 mm', medium: 'gas', method: 'aga8', x_methane: '96.5',
    x_ethane: '1.8', x_propane: '0.45', 'x_n-butane': '0.1', 'x_i-butane': '0.1', 'x_n-pentane': '0.03', 'x_i-pentane': '0.05',
    x_hexanes: '0.07', x_nitrogen: '0.3', x_carbon_dioxide: '0.6', t: '15 C', p: '5.5 MPa', dp: '25 kPa', q: '150000 m3/h-std',
    t_low: '0 C', t_high: '40 C', p_low: '1 MPa', p_high: '6 MPa', dp_low: '1 kPa', dp_high: '40 kPa',
    dp_range_kPa: '40 kPa', dp_class_pct: '0.075', p_range_MPa: '10 MPa', p_class_pct: '0.075', t_error_K: '0.3', D20_uncertainty_pct: '0.4',
    d20_uncertainty_pct: '0.07', K_uncertainty_pct: '0.1', rho_c_uncertainty_pct: '0.1', composition_uncertainty_mol_pct: '0.02', heat_uncertainty_pct: '0.2',
    'table.t_from': '0 C', 'table.t_to': '40 C', 'table.t_step': '10 C', 'table.p_from': '1 MPa', 'table.p_to': '6 MPa', 'table.p_step': '1 MPa',
  }],
];
