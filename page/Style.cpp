#include "page/Style.h"

#include "drawing/Svg.h"

namespace page {

namespace {

constexpr const char* kColours = R"(
:root{--ground:#fff;--raised:#f6f8fb;--text:#14202e;--muted:#55616f;--line:#d3dbe5;--strong:#1d4e89;
--error:#a4161a;--error-ground:#fdecec;--warning:#7a4d00;--warning-ground:#fff4dc;--note:#1d4e89;
--note-ground:#e8f1fb;--good:#0b5c43;--good-ground:#e3f4ec;color-scheme:light}
@media screen and (prefers-color-scheme:dark){:root{--ground:#10161d;--raised:#19222c;--text:#e8eef5;
--muted:#a9b6c4;--line:#33414f;--strong:#8fbdf0;--error:#ffb3b3;--error-ground:#42191b;--warning:#ffd591;
--warning-ground:#3b2b0c;--note:#b5d4f7;--note-ground:#172c44;--good:#b5ebd4;--good-ground:#143528;
color-scheme:dark}}
)";

constexpr const char* kLayout = R"(
*{box-sizing:border-box}
html{-webkit-text-size-adjust:100%;text-size-adjust:100%}
body{margin:0;background:var(--ground);color:var(--text);line-height:1.45;overflow-wrap:anywhere;
font-family:system-ui,"Segoe UI",Roboto,"Helvetica Neue",Arial,sans-serif;font-size:1rem}
a{color:var(--strong)}
:focus-visible{outline:3px solid var(--strong);outline-offset:2px}
.skip{position:absolute;left:-100vw;top:0;padding:.5rem 1rem;background:var(--ground);z-index:1}
.skip:focus{left:0}
header,main,footer{max-width:84rem;margin:0 auto;padding:0 1.25rem}
header{padding-top:1.75rem}
h1{margin:0;font-size:1.9rem;line-height:1.2;letter-spacing:-.01em}
.subtitle{margin:.3rem 0 0;color:var(--muted);font-size:1.05rem}
nav ul{display:flex;flex-wrap:wrap;gap:.35rem .5rem;margin:1.1rem 0 0;padding:0;list-style:none}
nav a{display:inline-block;padding:.25rem .75rem;border:1px solid var(--line);border-radius:1rem;
background:var(--raised);text-decoration:none;font-size:.9rem}
nav a:hover{border-color:var(--strong)}
section{margin-top:2.25rem}
h2{margin:0 0 .3rem;font-size:1.3rem;line-height:1.3}
h2 .count{color:var(--muted);font-weight:400}
h3{margin:0 0 .4rem;font-size:1rem}
.about{margin:0 0 .8rem;color:var(--muted)}
.overview{display:grid;gap:2.25rem;grid-template-columns:minmax(0,1fr)}
.overview section{margin-top:2.25rem;min-width:0}
.overview section+section{margin-top:0}
figure{margin:0}
figcaption{margin-top:.5rem;color:var(--muted);font-size:.85rem}
.block-drawing{display:block;max-width:100%;height:auto}
.block-narrow{display:none}
.facts{display:grid;gap:1rem;grid-template-columns:repeat(auto-fit,minmax(min(100%,20rem),1fr));align-items:start}
.facts>div{padding:.9rem 1.1rem;border:1px solid var(--line);border-radius:.5rem;background:var(--raised)}
dl{display:grid;grid-template-columns:minmax(5.5rem,7rem) minmax(0,1fr);gap:.25rem 1rem;margin:0;font-size:.92rem}
dt{color:var(--muted)}
dd{margin:0}
table{width:100%;border-collapse:collapse;font-size:.88rem;font-variant-numeric:tabular-nums}
caption{text-align:left;color:var(--muted);font-size:.95rem;padding:0 0 .6rem}
th,td{padding:.4rem .6rem;border-bottom:1px solid var(--line);text-align:left;vertical-align:top;font-weight:400}
thead th{border-bottom:2px solid var(--strong);font-weight:600;vertical-align:bottom;overflow-wrap:normal}
tbody th{font-weight:600}
tbody tr:hover{background:var(--raised)}
.points thead th:last-child{min-width:6rem}
.number{text-align:right}
.cell-note{display:block;color:var(--muted);font-size:.85em;font-weight:400}
.none{color:var(--muted)}
.enumerations{display:grid;gap:1rem;grid-template-columns:repeat(auto-fill,minmax(min(100%,19rem),1fr));
align-items:start}
.enumerations>div{padding:.9rem 1.1rem;border:1px solid var(--line);border-radius:.5rem}
.enumerations caption{padding:0 0 .5rem;color:var(--text)}
.enumerations p{margin:0;color:var(--muted);font-size:.85rem}
.enumerations th:first-child{width:4rem;text-align:right}
.enumerations th,.enumerations td{padding:.15rem .5rem}
.enumerations tr:last-child>*{border-bottom:0}
.findings{margin:0;padding:0;list-style:none}
.findings li{margin-top:.5rem;padding:.6rem .9rem;border-left:4px solid;border-radius:.25rem}
.findings code{font-size:.9em}
.severity{font-weight:700}
.place{color:var(--text)}
.message{margin:.15rem 0 0;color:var(--text)}
.error{background:var(--error-ground);border-color:var(--error);color:var(--error)}
.warning{background:var(--warning-ground);border-color:var(--warning);color:var(--warning)}
.note{background:var(--note-ground);border-color:var(--note);color:var(--note)}
.good{margin:0;padding:.6rem .9rem;border-radius:.25rem;background:var(--good-ground);color:var(--good)}
footer{margin-top:2.5rem;padding-top:1rem;padding-bottom:2rem;color:var(--muted);font-size:.85rem}
@media screen and (min-width:75em){.overview:not(.device){grid-template-columns:minmax(0,7fr) minmax(0,6fr)}
.overview:not(.device) section+section{margin-top:2.25rem}}
@media screen and (max-width:62em){.device .block-wide{display:none}.device .block-narrow{display:flex;
flex-wrap:wrap;gap:0 1rem;align-items:flex-start}}
@media screen and (max-width:42em){.block-wide{display:none}.block-narrow{display:block}
header,main,footer{padding-left:1rem;padding-right:1rem}h1{font-size:1.5rem}
dl{grid-template-columns:7.5rem minmax(0,1fr)}}
@media screen and (max-width:62em){
.points,.points caption,.points tr,.points th,.points td{display:block;width:auto}
.points tbody{display:grid;gap:.8rem;grid-template-columns:repeat(auto-fill,minmax(min(100%,20rem),1fr))}
.points thead{position:absolute;width:1px;height:1px;overflow:hidden;clip-path:inset(50%)}
.points tr{border:1px solid var(--line);border-radius:.5rem;overflow:hidden}
.points th,.points td{border-bottom:0;text-align:left}
.points tbody th{background:var(--raised);border-bottom:1px solid var(--line);font-size:1rem}
.points td{display:grid;grid-template-columns:7.5rem minmax(0,1fr);gap:0 .75rem;padding:.2rem .6rem}
.points td::before{content:attr(data-label);color:var(--muted)}
.points td:last-child{padding-bottom:.5rem}
.points td .none,.points td .cell-note{grid-column:2}}
)";

constexpr const char* kPrint = R"(
@page{size:A4;margin:16mm 14mm 18mm;@bottom-left{content:"Device sheet";font:8pt system-ui,sans-serif;color:#55616f}
@bottom-right{content:"Page " counter(page) " of " counter(pages);font:8pt system-ui,sans-serif;color:#55616f}}
@media print{body{font-size:9pt}footer{margin-top:8pt;break-before:avoid}.points thead th:last-child{min-width:6.5em}header,main,footer{max-width:none;padding:0}nav,.skip{display:none}
h1{font-size:18pt}h2{break-after:avoid}section{margin-top:14pt}
table{font-size:7.5pt}th,td{padding:2pt 4pt}thead{display:table-header-group}tr,.facts>div,.findings li,figure,
.enumerations>div{break-inside:avoid}caption{break-after:avoid;break-inside:avoid}
tbody tr:nth-child(-n+2){break-before:avoid}.points td:last-child{overflow-wrap:normal}.points thead th:nth-child(2){min-width:8em}
.block-wide .block-drawing{max-height:190mm;margin:0 auto}.facts,.enumerations{grid-template-columns:repeat(2,minmax(0,1fr));gap:8pt}
a{color:inherit;text-decoration:none}*{print-color-adjust:exact;-webkit-print-color-adjust:exact}}
)";

} // namespace

std::string Style() {
    // On one line: some readers take another text for the style when it has more.
    std::string style = kColours;
    style += kLayout;
    style += drawing::SvgStyle();
    style += kPrint;
    std::erase(style, '\n');
    return style;
}

} // namespace page
