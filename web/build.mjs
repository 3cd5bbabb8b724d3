// SPDX-License-Identifier: MIT
// Makes the page of its parts: build.mjs WASM_JS RELEASE_DIRECTORY PAGE_FILE
import {createHash} from 'node:crypto';
import {readFileSync, readdirSync, writeFileSync} from 'node:fs';
import {join} from 'node:path';

const [wasmScript, release, target] = process.argv.slice(2);
const here = import.meta.dirname ?? new URL(".", import.meta.url).pathname;
const read = (...path) => readFileSync(join(...path), 'utf8');
const page = name => read(here, 'page', name);
const packaged = name => read(here, 'node_modules', name);

// What the native library computed for the case files: function, case, file, line, inputs, output, expected, computed, ...
const native = {};
for (const line of read(release, 'values.csv').split('\n').slice(1)) {
  const [, , file, place, , output, , computed] = line.split(',');
  if (computed) native[`${file}:${place}:${output}`] = computed;
}
const folder = join(here, '../tests/cases');
const cases = Object.fromEntries(readdirSync(folder).filter(name => name.endsWith('.txt')).sort().map(name => [name, read(folder, name)]));
const data = {
  ru: JSON.parse(page('texts.ru.json')), cases, native,
  wasm: readFileSync(wasmScript.replace(/js$/, 'wasm')).toString('base64'),
  gas: readFileSync(join(release, 'gas.dat')).toString('base64'),
  nativeDigest: createHash('sha256').update(readFileSync(join(release, 'kalorfix.so'))).digest('hex'),
};

const ours = read(here, '../LICENSE');
// Nothing may end the element that holds it.
const inside = text => text.replace(/<\/(script|style)/gi, '<\\/$1').replace(/<!--/g, '<\\!--');
const scripts = ['texts', 'units', 'fields', 'form', 'results', 'verify', 'main'].map(name => page(name + '.js'));
const parts = {
  STYLE: packaged('uplot/dist/uPlot.min.css') + page('page.css'),
  DATA: JSON.stringify(data).replace(/</g, '\\u003c'),
  MODULE: inside(readFileSync(wasmScript, 'utf8')),
  PACKAGES: inside(packaged('uplot/dist/uPlot.iife.min.js') + '\n' + packaged('js-sha256/build/sha256.min.js')),
  SCRIPT: inside(`(() => {\n'use strict';\n${scripts.join('\n')}})();`),
  LICENCES: [['kalorfix', ours], ['emscripten', ours.replace(/Copyright.*/, 'Copyright (c) 2010-2022 The Emscripten Authors')],
    ['musl', read('/usr/share/emscripten/system/lib/libc/musl/COPYRIGHT')], ['uPlot', packaged('uplot/LICENSE')], ['js-sha256', packaged('js-sha256/LICENSE.txt')]]
    .map(([name, text]) => `${name}\n\n${text}`).join('\n\n').replace(/&/g, '&amp;').replace(/</g, '&lt;'),
};
const hash = text => `'sha256-${createHash('sha256').update(text).digest('base64')}'`;
parts.POLICY = `default-src 'none'; script-src 'wasm-unsafe-eval' ${['MODULE', 'PACKAGES', 'SCRIPT'].map(name => hash(parts[name])).join(' ')}; ` +
  `style-src ${hash(parts.STYLE)}; img-src data:; base-uri 'none'; form-action 'none'`;
writeFileSync(target, page('index.html').replace(/@([A-Z]+)@/g, (_, name) => parts[name]));
