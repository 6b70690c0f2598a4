// How a report page looks: in the light, in the dark, on paper. Nothing is told by colour alone.
#pragma once

namespace host {

inline constexpr const char* kHtmlStyle = R"(
:root { color-scheme: light dark;
  --paper: #fff; --ink: #1b1f24; --quiet: #5b6570; --line: #d5dae0; --raised: #f5f7f9;
  --good: #1a6b35; --good-soft: #d9efdf; --bad: #b3261e; --bad-soft: #fbe0de; --other: #7a5200; --other-soft: #fbecc8;
  --out: #1f5fa8; --in: #8a3ea8; }
@media (prefers-color-scheme: dark) { :root {
  --paper: #15181c; --ink: #e4e8ec; --quiet: #9aa5b1; --line: #39414a; --raised: #1f242a;
  --good: #7fd99a; --good-soft: #173a24; --bad: #ff9d94; --bad-soft: #4a1d1a; --other: #f2c968; --other-soft: #42330f;
  --out: #7fb5f5; --in: #d79bf0; } }
body { margin: 0 auto; max-width: 66rem; padding: 1.5rem; background: var(--paper); color: var(--ink);
  font: 15px/1.5 system-ui, "Segoe UI", sans-serif; }
h1 { font-size: 1.7rem; margin: 0 0 .25rem; } h2 { font-size: 1.25rem; margin: 2.5rem 0 .5rem; }
h3 { font-size: 1rem; margin: 1.25rem 0 .35rem; } p { margin: .25rem 0; } a { color: inherit; }
.quiet { color: var(--quiet); }
.verdict { border-radius: .35rem; padding: .05rem .5rem; font-weight: 600; white-space: nowrap; }
.good { color: var(--good); background: var(--good-soft); } .bad { color: var(--bad); background: var(--bad-soft); }
.other { color: var(--other); background: var(--other-soft); }
.wide { overflow-x: auto; }
table { border-collapse: collapse; width: 100%; }
th, td { text-align: left; padding: .25rem .6rem .25rem 0; border-bottom: 1px solid var(--line); vertical-align: top; }
.long { overflow-wrap: anywhere; }
th { font-weight: 600; color: var(--quiet); white-space: nowrap; }
.number { text-align: right; font-variant-numeric: tabular-nums; white-space: nowrap; }
pre, code { font: 13px/1.45 ui-monospace, "DejaVu Sans Mono", Consolas, monospace; }
pre { margin: 0; padding: .6rem; background: var(--raised); border: 1px solid var(--line); border-radius: .35rem;
  white-space: pre-wrap; overflow-wrap: anywhere; max-height: 32rem; overflow-y: auto; }
pre i { color: var(--quiet); font-style: normal; }
summary { cursor: pointer; font-weight: 600; margin: 1.25rem 0 .35rem; }
svg { display: block; max-width: 100%; height: auto; } svg text { fill: var(--quiet); font: 11px system-ui, sans-serif; }
.limits { fill: var(--good-soft); stroke: var(--good); } .axis { stroke: var(--quiet); fill: none; }
.mark-good { fill: var(--good); } .mark-bad { fill: var(--bad); }
.out { stroke: var(--out); fill: none; } .in { stroke: var(--in); fill: none; } .asked { fill: var(--other-soft); }
.key-out { color: var(--out); } .key-in { color: var(--in); }
@media print {
  :root { color-scheme: light; --paper: #fff; --ink: #000; --quiet: #444; --line: #bbb; --raised: #fff;
    --good: #1a6b35; --good-soft: #d9efdf; --bad: #b3261e; --bad-soft: #fbe0de; --other: #7a5200; --other-soft: #fbecc8;
    --out: #1f5fa8; --in: #8a3ea8; }
  * { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
  body { max-width: none; padding: 0; font-size: 10pt; } pre { max-height: none; overflow: visible; font-size: 8pt; }
  h2, h3, summary { break-after: avoid; } tr, svg { break-inside: avoid; } thead { display: table-header-group; } }
)";

} // namespace host
