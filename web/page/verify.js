// SPDX-License-Identifier: MIT
// The case files, run inside the page, and compared with what the native build of the same sources computed.
const bytes = base64 => Uint8Array.from(atob(base64), c => c.charCodeAt(0));

/** A number's place on the line of single-precision numbers. */
function single(value) {
  const bits = new DataView(new ArrayBuffer(4));
  bits.setFloat32(0, value);
  const place = bits.getInt32(0);
  return place >= 0 ? place : -0x80000000 - place;
}
const number = text => text === 'inf' ? Infinity : text === '-inf' ? -Infinity : Number(text);
function unitsApart(a, b) {
  if (a === b || (Number.isNaN(number(a)) && Number.isNaN(number(b)))) return 0;
  return Math.abs(single(number(a)) - single(number(b)));
}

/** A library of its own, with the directories of a controller in memory. */
async function openLibrary() {
  const module = await KalorfixModule({wasmBinary: bytes(data.wasm)});
  for (const directory of ['settings', 'system', 'sram/dat']) module.FS.mkdirTree('/ubm/' + directory);
  module.FS.writeFile('/ubm/settings/tornkntr.ini', '[TORNOL]\nNum_gas_trub = 2 : pipelines\n');
  module.FS.writeFile('/ubm/system/gas.dat', bytes(data.gas));
  const stamp = new DataView(new ArrayBuffer(12));
  stamp.setUint32(0, Date.now() / 1000, true);
  module.FS.writeFile('/ubm/sram/dat/timewait.dat', new Uint8Array(stamp.buffer));
  return module;
}

async function runCases() {
  const functions = new Map();
  const total = {cases: 0, values: 0, differs: 0, FAILED: 0, same: 0, one: 0};
  const apart = [], failed = [];
  for (const [file, text] of Object.entries(data.cases)) {
    const library = await openLibrary();
    const found = JSON.parse(library.ccall('page_verify', 'string', ['string', 'string'], [file, text]));
    let last = '';
    for (const [name, line, id, output, expected, computed, permitted, verdict] of found) {
      const sums = functions.get(name) ?? {cases: 0, values: 0, differs: 0, FAILED: 0};
      functions.set(name, sums);
      for (const one of [sums, total]) {
        if (line !== last) one.cases++;
        one.values++;
        if (verdict !== 'met') one[verdict]++;
      }
      last = line;
      const native = data.native[`${file}:${line}:${output}`];
      const distance = native === undefined ? Infinity : unitsApart(computed, native);
      if (computed === native) total.same++;
      else if (distance <= 1) total.one++;
      else apart.push([`${file}:${line}`, output, computed, native ?? '–']);
      if (verdict === 'FAILED') failed.push([`${file}:${line}`, output, computed, expected]);
    }
    await new Promise(resolve => setTimeout(resolve));
  }
  return {functions, total, apart, failed};
}

const listOf = (title, heads, rows) => element('table', {}, element('caption', {}, t(title)),
  element('thead', {}, element('tr', {}, ...heads.map(head => element('th', {scope: 'col'}, t(head))))),
  element('tbody', {}, ...rows.map(row => element('tr', {}, ...row.map(cell => element('td', {}, String(cell)))))));

async function showVerify(panel) {
  showFault();
  summary(t('running the case files ...'));
  panel.replaceChildren();
  const {functions, total, apart, failed} = await runCases();
  if (tab !== 'Verify') return;
  const met = total.FAILED === 0 && apart.length === 0;
  summary(`${total.FAILED === 0 ? t('MET') : t('FAILED')}: ${total.values} ${t('values')}, ${total.differs} ${t('differ as declared')}, ${total.FAILED} ${t('failed')}` +
    (apart.length ? `, ${apart.length} ${t('farther apart')}` : ''), !met);
  const digests = [['WebAssembly', bytes(data.wasm)], ['gas.dat', bytes(data.gas)], ...Object.entries(data.cases)];
  panel.replaceChildren(printed(),
    listOf('Functions', ['function', 'points', 'values', 'differ as declared', 'failed'],
      [...functions].map(([name, s]) => [name, s.cases, s.values, s.differs, s.FAILED])),
    element('p', {id: 'native'}, `${t('Compared with the native library')}: ${total.same} ${t('of')} ${total.values} ${t('values equal in every bit')}, ` +
      `${total.one} ${t('within one unit in the last place of single precision')}, ${apart.length} ${t('farther apart')}.`),
    ...(apart.length ? [listOf('Farther apart', ['place', 'output', 'page', 'native'], apart)] : []),
    ...(failed.length ? [listOf('Failed', ['place', 'output', 'computed', 'expected'], failed)] : []),
    listOf('Digests, SHA-256', ['file', 'digest'], [...digests.map(([name, content]) => [name, sha256(content)]), [t('native library compared with'), data.nativeDigest]]));
  for (const row of panel.querySelectorAll('table:last-child td:last-child')) row.className = 'digest';
}
