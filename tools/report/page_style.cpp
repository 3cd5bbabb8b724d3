// SPDX-License-Identifier: MIT
#include "tools/report/page_parts.h"

namespace kalorfix::tool::report {

const std::string_view page_style = R"css(
:root { --ink: #1c2126; --grey: #5b6670; --rule: #d5dadf; --accent: #1f5a8c; --met: #1b6e3c; --declared: #8a5a00; --failed: #a3261d; }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 1160px; padding: 40px 40px 80px; color: var(--ink); background: #fff;
  font: 14px/1.5 system-ui, -apple-system, "Segoe UI", "Liberation Sans", "DejaVu Sans", sans-serif; }
h1 { font-size: 28px; font-weight: 600; line-height: 1.2; margin: 0 0 4px; letter-spacing: -0.01em; }
h2 { font-size: 20px; font-weight: 600; margin: 56px 0 12px; padding-top: 10px; border-top: 2px solid var(--ink); }
h3 { font-size: 16px; font-weight: 600; margin: 28px 0 8px; } h4 { font-size: 13px; font-weight: 600; margin: 26px 0 4px; }
p { margin: 6px 0; max-width: 90ch; } a { color: var(--accent); text-decoration: none; }
small { color: var(--grey); font-size: 0.88em; font-weight: 400; }
code { font: 0.9em ui-monospace, "Liberation Mono", "DejaVu Sans Mono", monospace; overflow-wrap: anywhere; }
.lead { color: var(--grey); margin-bottom: 20px; }
.outcome { display: inline-block; margin: 14px 0 18px; padding: 8px 14px; border: 1.5px solid var(--met); color: var(--met);
  font-weight: 600; }
.outcome.bad { border-color: var(--failed); color: var(--failed); } .outcome.declared { border-color: var(--declared); margin-left: 8px; }
.declared { color: var(--declared); } .failed { color: var(--failed); } .met { color: var(--met); }
.trace { color: var(--grey); font-weight: 400; margin-left: 10px; }
.note, .fixed { color: var(--grey); font-size: 12.5px; margin: 2px 0; max-width: none; }
.fixed b { font-weight: 600; }
table { border-collapse: collapse; width: 100%; margin: 8px 0 14px; font-size: 12.5px; line-height: 1.35;
  font-variant-numeric: tabular-nums; }
th, td { text-align: right; padding: 3px 8px; vertical-align: top; border-bottom: 1px solid #e9ecef; }
th { font-weight: 600; border-bottom: 1px solid var(--ink); vertical-align: bottom; }
th:first-child, td:first-child { padding-left: 0; } th:last-child, td:last-child { padding-right: 0; } .name { text-align: left; }
.values { font-size: 12px; } .values td { white-space: nowrap; } .values td.name { white-space: normal; min-width: 8ch; }
.wide { font-size: 11px; } .wide th, .wide td { padding: 3px 5px; }
.facts th { text-align: left; width: 170px; border-bottom: 1px solid #e9ecef; vertical-align: top; }
.facts td { text-align: left; overflow-wrap: anywhere; } .facts ul { margin: 0; padding-left: 16px; }
.scroll { overflow-x: auto; } .purpose { max-width: 90ch; } summary { cursor: pointer; margin: 14px 0; color: var(--accent); }
.texts td, .texts th { text-align: left; font-size: 11.5px; min-width: 11ch; }
.chart { width: 100%; height: auto; display: block; margin: 14px 0 6px; }
svg text { font-family: inherit; }
.prose ul { padding-left: 18px; margin: 6px 0; } .prose li { margin: 4px 0; max-width: 100ch; }
.prose td, .prose th { text-align: left; } .prose td:first-child { width: 14%; } .prose td:nth-child(2) { width: 26%; }
footer { margin-top: 48px; border-top: 1px solid var(--rule); padding-top: 8px; color: var(--grey); font-size: 12px; }
@media (max-width: 700px) {
  body { padding: 16px 12px 48px; } h1 { font-size: 22px; } h2 { margin-top: 36px; } .facts th { width: 34%; }
  .outcome, .outcome.declared { display: block; margin: 8px 0; } .values td.name { min-width: 12ch; } td.name:first-child { min-width: 22ch; } .prose { overflow-x: auto; }
  .chart { width: 760px; } .charts { overflow-x: auto; }
}
@page { size: A4 portrait; margin: 14mm 12mm 16mm; }
@media print {
  body { max-width: none; padding: 0; font-size: 9.5pt; }
  h2 { margin-top: 22px; font-size: 13pt; } h3 { margin: 12px 0 4px; font-size: 10.5pt; } h4 { margin: 10px 0 2px; font-size: 8.4pt; }
  .scroll { overflow: visible; } details, .screen { display: none; } .chart { margin: 4px 0 2px; width: 78%; } .note, .fixed { font-size: 7.8pt; }
  h2, h3, h4, .note, .fixed { break-after: avoid; }
  thead { display: table-header-group; }
  tr, .chart { break-inside: avoid; }
  table { font-size: 7.4pt; line-height: 1.2; margin: 4px 0 8px; } .values { font-size: 6.8pt; } th, td { padding: 0.8pt 4pt; }
  .texts td, .texts th { font-size: 7pt; min-width: 0; } .values td.name { min-width: 0; white-space: nowrap; } .values.limits td.name { white-space: normal; }
  .wide { font-size: 5.6pt; } .wide th, .wide td { padding: 0.8pt 1.6pt; }
  a:not(.declared) { color: inherit; }
}
)css";

}  // namespace kalorfix::tool::report
