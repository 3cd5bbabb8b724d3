// SPDX-License-Identifier: MIT
// The browser page in headless Chromium: page_test.mjs PAGE_FILE DIRECTORY_FOR_SCREENSHOTS
import {strict as assert} from 'node:assert';
import {createRequire} from 'node:module';
import {join, resolve} from 'node:path';

const {launch} = createRequire(new URL('../web/package.json', import.meta.url))('puppeteer-core');
const [file, shots] = process.argv.slice(2);
const address = 'file://' + resolve(file);
const browser = await launch({executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium', args: ['--no-sandbox', '--disable-gpu']});
const page = await browser.newPage();
const complaints = [];
page.on('request', request => /^(file|data|blob):/.test(request.url()) || complaints.push(request.url()));
page.on('console', message => message.type() === 'error' && complaints.push(message.text()));
page.on('pageerror', error => complaints.push(String(error)));

const text = selector => page.$eval(selector, place => place.textContent);
async function open(input) {
  await page.goto('about:blank');
  await page.goto(`${address}#${new URLSearchParams({lang: 'en', ...input})}`);
  await page.waitForFunction(() => document.getElementById('summary').textContent !== '');
}
async function type(id, value) {
  await page.$eval('#' + CSS.escape('f-' + id), (box, typed) => { box.value = typed; box.dispatchEvent(new Event('input')); }, value);
  await new Promise(done => setTimeout(done, 400));
}
const CSS = {escape: id => id.replace(/[.]/g, '\\.')};
const shot = name => page.screenshot({path: join(shots, `page_${name}.png`), fullPage: true});
let passed = 0;
async function test(name, body) {
  await body();
  console.log('ok', name);
  ++passed;
}
const gas = {device: 'orifice_flange', D20: '400 mm', d20: '220 mm', medium: 'gas', method: 'aga8', x_methane: '98', x_nitrogen: '2', t: '15 C', p: '5.5 MPa', dp: '25 kPa'};

await page.setViewport({width: 1280, height: 900});
await test('the steam channel and its sizing', async () => {
  await open({});
  assert.equal(await text('#summary'), '57.02745 t/h');
  await open({unknown: 'bore', q: '57.02744662 t/h'});
  assert.match(await text('#summary'), /: 180 mm$/);
  await open({D20: '11.811023622 in', p: '174.045285 psi', t: '572 F'});
  assert.equal(await text('#summary'), '57.02745 t/h');
  await shot('sheet');
});
await test('a refused station', async () => {
  await open({t: '301 C', p: '0.12 MPa', dp: '42 kPa'});
  assert.match(await text('#summary'), /^not solved: dp\/p 0\.35 exceeds 0\.25/);
  await open({tab: 'Check', d20: '290 mm'});
  assert.ok((await page.$$('tr.STOP')).length >= 2);
  await shot('refused');
});
await test('hostile compositions and fields', async () => {
  for (const [id, value, told] of [['x_methane', '<img src=x onerror=alert(1)>', /methane: expected a number/], ['x_methane', '1e308', /within 0\.\.100/],
    ['x_ethane', '-5', /within 0\.\.100/], ['x_ethane', '60', /sums to 160, not to 100/], ['D20', 'NaN', /expected a number/], ['t', '9'.repeat(80), /expected a number/]]) {
    await open({...gas, [id]: value});
    assert.match(await text('#summary'), told);
    assert.equal(await page.$$eval('#form [aria-invalid], #row-sum .fault', found => found.length > 0), true, id + value);
  }
  // Numbers as they are copied: groups by blanks that do not break, a comma that may part thousands or decimals.
  const values = {'300\u00a0000': '57.02745 t/h', '300 000,0': '57.02745 t/h', '300000': '57.02745 t/h', '300,000': /may be 300\.000 or 300000$/,
    '30 0000': /expected a number/, '300,000.0': /expected a number/, '1e400': /expected a number within/, '-300000': /expected a number within/};
  for (const [value, told] of Object.entries(values)) {
    await open({D20: `${value} um`});
    assert.match(await text('#summary'), new RegExp(told));
  }
  await open({...gas, x_methane: '0', x_nitrogen: '0', x_helium: '100'});
  assert.match(await text('#summary'), /not solved: |m³\/h/);
  await shot('hostile');
});
await test('tabs: check, curves, properties', async () => {
  await open({...gas, tab: 'Check', t_low: '0 C', t_high: '40 C', p_low: '1 MPa', p_high: '6 MPa', dp_low: '1 kPa', dp_high: '40 kPa', edge: '0.05 mm'});
  assert.match(await text('#summary'), /STOP 0/);
  await shot('check');
  await page.click('#tab-Uncertainty');
  assert.match(await text('#summary'), /at least 0\.\d+ %/);
  await type('dp_range_kPa', '20');
  await type('dp_class_pct', '0.1');
  assert.match(await text('#summary'), /not computed/);
  await shot('uncertainty');
  await open({...gas, tab: 'Uncertainty', dp_range_kPa: '40 kPa', dp_class_pct: '0.075', p_error_MPa: '10 kPa', t_error_K: '0.3', D20_uncertainty_pct: '0.4',
    d20_uncertainty_pct: '0.07', K_uncertainty_pct: '0.1', rho_c_uncertainty_pct: '0.1', composition_uncertainty_mol_pct: '0.02', heat_uncertainty_pct: '0.2'});
  assert.match(await text('#summary'), /^mass flow: 0\.\d{3} %;/);
  await shot('budget');
  await page.click('#tab-Curves');
  assert.equal((await page.$$('canvas')).length, 3);
  await shot('curves');
  await page.keyboard.press('ArrowRight');
  assert.ok((await page.$$('#properties tbody tr')).length > 5);
  await open({tab: 'Properties', 'table.t_from': '150 C', 'table.t_to': '', 'table.p_from': '0.6 MPa', 'table.p_to': ''});
  assert.match(await text('#properties tbody'), /water917\.0782182\.49/);
});
await test('Russian, nothing left in English', async () => {
  const media = [{}, {t: '90 C', p: '0.8 MPa'}, {medium: 'given', rho: '5', mu: '20 uPas', kappa: '1.3'}, gas,
    {...gas, method: 'gerg91', rho_c: '0.68', n2: '0.9', co2: '0.1'}, {...gas, method: 'gerg91', rho_c: '0.5', n2: '50', co2: '0'}, {...gas, method: 'vnic', heat: 'kcal20', vapour: '0.001'}];
  const twists = [{}, {unknown: 'bore'}, {unknown: 'dp', q: '1e9 kg/h'}, {p: '50 kPa'}, {t: '900 C'}, {dp: '10 MPa'}, {d20: '390 mm', edge: '1 mm'},
    {D20: '20 mm'}, {device: 'averaging_12', column: '-1000', column_rho: '20000'}, {expansion: 'coefficients'}, {x_methane: '120'}, {dp: 'abc'},
    {dp_range_kPa: '20 kPa', dp_class_pct: '0.1', heat_uncertainty_pct: '0.2'}, {t_low: '-50 C', t_high: '900 C', p_low: '1 kPa', p_high: '90 MPa'}];
  await open({});
  for (const medium of media)
    for (const twist of twists)
      for (const tab of ['Result', 'Check', 'Uncertainty', 'Properties', ...(twist === twists[0] ? ['Curves'] : [])]) {
        await page.evaluate(input => { delete document.documentElement.dataset.untranslated; location.hash = input; },
          String(new URLSearchParams({lang: 'ru', tab, ...medium, ...twist})));
        await page.waitForFunction(() => document.documentElement.dataset.untranslated !== undefined);
        assert.equal(await page.$eval('html', root => root.dataset.untranslated), '', JSON.stringify({tab, ...medium, ...twist}));
      }
  await open({lang: 'ru', p: '1,2 MPa'});
  assert.equal(await text('#summary'), '57,02745 т/ч');
  await shot('russian');
});
await test('width of a telephone', async () => {
  await page.setViewport({width: 360, height: 740, isMobile: true, hasTouch: true});
  for (const tab of ['Result', 'Check', 'Curves']) {
    await open({tab});
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= 360), tab);
    await shot('telephone_' + tab);
  }
  await page.setViewport({width: 1280, height: 900});
});
await test('a link keeps the input', async () => {
  await open({});
  await type('d20', '190');
  await page.select('#row-d20 .unit', 'mm');
  await type('name', 'Boiler 3 & "<b>"');
  await type('roughness', '');
  const [link, result] = [page.url(), await text('#summary')];
  assert.match(link, /roughness=/);
  await page.focus('.skip');
  await page.keyboard.press('Enter');
  assert.equal(page.url(), link);
  await page.goto('about:blank');
  await page.goto(link);
  await page.waitForFunction(() => document.getElementById('summary').textContent !== '');
  assert.equal(await text('#summary'), result);
  assert.equal(await page.$eval('#f-name', box => box.value), 'Boiler 3 & "<b>"');
  await page.emulateMediaType('print');
  await shot('print');
  await page.emulateMediaType('screen');
});
await test('every field has a label', async () => {
  await open(gas);
  assert.deepEqual(await page.$$eval('#form input, #form select', all => all.filter(one => !one.labels.length && !one.ariaLabel).map(one => one.id)), []);
});
await test('the case files are met', async () => {
  await open({tab: 'Verify'});
  await page.waitForSelector('#native', {timeout: 120000});
  assert.match(await text('#summary'), /^MET: \d{4} values, \d+ differ as declared, 0 failed/);
  console.log('   ', await text('#summary'), '\n   ', await text('#native'));
  assert.match(await text('#native'), / 0 farther apart/);
  await shot('verify');
});
assert.deepEqual(complaints, []);
await browser.close();
console.log(`${passed} passed, 0 failed`);
