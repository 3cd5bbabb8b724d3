// SPDX-License-Identifier: MIT
// Start, languages and tabs.
function show() {
  document.documentElement.lang = language;
  for (const place of document.querySelectorAll('[data-text]')) place.textContent = t(place.dataset.text);
  document.getElementById('version').textContent = offers.identity.replace('@(#)', '');
  const languages = [['en', 'English'], ['ru', 'Русский']].map(([code, title]) => element('button',
    {type: 'button', lang: code, 'aria-pressed': String(code === language), onclick: () => { language = code; writeAddress(); show(); }}, title));
  document.getElementById('languages').replaceChildren(...languages);
  const place = document.getElementById('tabs');
  place.setAttribute('aria-label', t('Results'));
  place.replaceChildren(...tabs.map(name => element('button', {type: 'button', role: 'tab', id: 'tab-' + name, 'aria-controls': 'panel',
    'aria-selected': String(name === tab), tabindex: name === tab ? 0 : -1, onclick: () => choose(name)}, t(name))));
  document.getElementById('panel').setAttribute('aria-labelledby', 'tab-' + tab);
  drawForm();
  calculate();
  document.documentElement.dataset.untranslated = [...untranslated].join('|');
}

function choose(name) {
  tab = name;
  writeAddress();
  show();
  document.getElementById('tab-' + name).focus();
}

function calculate() {
  const panel = document.getElementById('panel');
  try {
    return {Result: showResult, Check: showCheck, Uncertainty: showUncertainty, Curves: showCurves, Properties: showProperties, Verify: showVerify}[tab](panel);
  } catch (error) {
    // No result of other input stays.
    panel.replaceChildren();
    summary(String(error), true);
  }
}

async function start() {
  kalorfix = await openLibrary();
  kalorfix.ccall('page_start', null, [], []);
  offers = ask('page_offers');
  completeFields();
  readAddress();
  document.getElementById('tabs').addEventListener('keydown', event => {
    const step = {ArrowRight: 1, ArrowLeft: -1}[event.key];
    if (step) choose(tabs[(tabs.indexOf(tab) + step + tabs.length) % tabs.length]);
  });
  document.getElementById('form').addEventListener('submit', event => event.preventDefault());
  addEventListener('hashchange', () => { clearInput(); readAddress(); show(); });
  // Its own address would take the place of the input.
  document.querySelector('.skip').addEventListener('click', event => {
    event.preventDefault();
    document.getElementById('panel').focus();
  });
  show();
}
start().catch(error => summary(String(error), true));
