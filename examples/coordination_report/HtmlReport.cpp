#include "examples/coordination_report/HtmlReport.h"

#include "examples/coordination_report/CentrePicture.h"
#include "examples/coordination_report/DeviationColours.h"
#include "examples/shared/Ribbon.h"
#include "examples/shared/Svg.h"

namespace CoordinationReport {
namespace {

using Examples::Escape;

char const* const head = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Coordination report</title>
<style>
:root { color-scheme: light dark; --page: #f2f4f8; --card: #ffffff; --ink: #1f2733; --faint: #5d6878;
  --rule: #dde3eb; --accent: #2f7d6b; }
@media (prefers-color-scheme: dark) {
  :root { --page: #12161c; --card: #1b2028; --ink: #e6eaf0; --faint: #97a3b4; --rule: #2f3844; --accent: #4fb59c; }
}
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 1440px; padding: 28px 24px 60px; background: var(--page); color: var(--ink);
  font: 15px/1.5 Helvetica, Arial, sans-serif; }
h1 { margin: 0 0 4px; font-size: 28px; }
h2 { margin: 0; font-size: 18px; overflow-wrap: anywhere; }
h3 { margin: 0; font-size: 16px; }
p { margin: 4px 0; }
.faint { color: var(--faint); font-size: 13px; }
.failures { margin: 18px 0; padding: 12px 18px; border-left: 4px solid #c0453c; background: var(--card);
  border-radius: 6px; }
nav { margin: 18px 0 8px; columns: 220px auto; column-gap: 24px; font-size: 13.5px; }
nav a { display: block; color: var(--accent); text-decoration: none; overflow-wrap: anywhere; break-inside: avoid; }
nav a:hover { text-decoration: underline; }
main, .centres { display: grid; grid-template-columns: repeat(auto-fill, minmax(min(100%, 540px), 1fr)); gap: 18px; }
main { margin-top: 24px; }
section { background: var(--card); border: 1px solid var(--rule); border-radius: 10px; padding: 18px 20px;
  min-width: 0; }
section.wide { grid-column: 1 / -1; }
article { margin-top: 12px; min-width: 0; }
article svg, .legend svg { display: block; width: 100%; height: auto; margin: 6px 0; }
.legend { margin: 14px 0 0; padding: 12px 18px; max-width: 470px; background: var(--card);
  border: 1px solid var(--rule); border-radius: 10px; }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; width: 100%; font-size: 13px; }
th, td { text-align: left; padding: 4px 10px 4px 0; border-top: 1px solid var(--rule); vertical-align: top; }
th { color: var(--faint); font-weight: normal; border-top: none; }
td.number { font-variant-numeric: tabular-nums; }
tr.best td { font-weight: bold; }
</style>
</head>
<body>
<h1>Coordination report</h1>
)";

std::string Joined(std::vector<std::string> const& words)
{
    std::string text;
    for (std::string const& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

std::string Table(Structure const& structure, RankedCentre const& ranked)
{
    if (ranked.ranking.candidates.empty()) {
        return "<p class=\"faint\">" + Escape(NoRankingText(ranked)) + "</p>\n";
    }
    std::string table =
        "<div class=\"scroll\"><table>\n<tr><th>deviation</th><th>fit</th><th>geometry</th><th>code</th>"
        "<th>ligands on the sites 1, 2, ...</th></tr>\n";
    bool best = true;
    for (Candidate const& candidate : ranked.ranking.candidates) {
        table += std::string(best ? "<tr class=\"best\">" : "<tr>") + "<td class=\"number\">" +
                 DeviationText(candidate.deviation) + "</td><td class=\"number\">" + FitText(candidate) +
                 "</td><td>" + Escape(candidate.title) + "</td><td>" + Escape(candidate.code) + "</td><td>" +
                 Escape(Joined(LabellingOf(structure, ranked.centre, candidate))) + "</td></tr>\n";
        best = false;
    }
    return table + "</table></div>\n";
}

std::string Article(Structure const& structure, RankedCentre const& ranked, std::string const& id)
{
    Centre const& centre = ranked.centre;
    std::string text = "<article id=\"" + id + "\">\n<h3>" + structure.NameOf(centre.atom);
    if (!ranked.ranking.candidates.empty()) {
        text += ": " + Escape(ranked.ranking.candidates.front().title);
    }
    text += "</h3>\n<p class=\"faint\">coordination number " + std::to_string(centre.ligands.size());
    if (centre.alike > 0) {
        text += ", " + std::to_string(centre.alike) + " more like it";
    }
    text += "</p>\n" + DrawCentre(structure, ranked, id, false) + Table(structure, ranked);
    if (!centre.ligands.empty()) {
        text +=
            "<p class=\"faint\">Distances in \u00e5ngstr\u00f6m: " + Escape(LigandText(structure, centre)) +
            "</p>\n";
    }
    return text + "</article>\n";
}

std::string Section(FileReport const& report, std::string const& id)
{
    Structure const& structure = report.structure;
    std::string text = std::string("<section") + (report.centres.size() > 1 ? " class=\"wide\"" : "") +
                       " id=\"" + id + "\">\n<h2>" + Escape(structure.FileName()) + "</h2>\n";
    text += "<p class=\"faint\">" + Escape(structure.comment) + "</p>\n";
    for (std::string const& remark : report.remarks) {
        text += "<p class=\"faint\">" + Escape(remark) + "</p>\n";
    }
    text += "<div class=\"centres\">\n";
    for (std::size_t k = 0; k < report.centres.size(); ++k) {
        text += Article(structure, report.centres[k], id + "-" + std::to_string(k + 1));
    }
    return text + "</div>\n</section>\n";
}

std::string Legend()
{
    Examples::Svg svg(404, 26, "legend");
    DrawDeviationLegend(svg, {2, 2}, 400);
    return "<div class=\"legend\"><p class=\"faint\">Bars and polyhedra have the colour of the "
           "deviation</p>" +
           svg.Finish(false) + "</div>\n";
}

std::string ChainSection(Structure const& chain, std::string const& id)
{
    return "<section id=\"" + id + "\">\n<h2>" + Escape(chain.FileName()) + "</h2>\n<p class=\"faint\">" +
           Escape(chain.comment) + "</p>\n<p class=\"faint\">" + std::to_string(chain.atoms.size()) +
           " points, from blue at the start to red at the end</p>\n<article>\n" +
           DrawChain(chain, id, false) + "</article>\n</section>\n";
}

std::string Link(std::string const& id, Structure const& structure)
{
    return "<a href=\"#" + id + "\">" + Escape(structure.FileName()) + "</a>\n";
}

} // namespace

std::string DrawChain(Structure const& chain, std::string const& idPrefix, bool asFile)
{
    Orrin::LegacyArray<Point3d> points;
    for (Atom const& atom : chain.atoms) {
        points.push_back(atom.position);
    }
    return Examples::DrawRibbon(points, idPrefix, asFile);
}

std::string HtmlPage(std::vector<FileReport> const& reports, std::vector<Structure> const& chains,
                     std::vector<std::string> const& failures)
{
    std::size_t centres = 0;
    for (FileReport const& report : reports) {
        centres += report.centres.size();
    }
    std::string page = head;
    page += "<p class=\"faint\">" + std::to_string(centres) + (centres == 1 ? " centre" : " centres") +
            " in " + std::to_string(reports.size()) + (reports.size() == 1 ? " file" : " files") +
            ". The deviation is the sum over all pairs of ligands of the squared difference between the "
            "measured and the ideal cosine of their angle, for the best labelling; 0 is a perfect fit. The "
            "fit is the root of the mean squared distance between the directions of the ligands and the "
            "sites of the ideal polyhedron laid on them, in parts of the bond length. The translucent "
            "polyhedron is the ideal one of the best geometry, or that of the ligands, in grey, where no "
            "geometry has a deviation. Atoms carry their number in the file.</p>\n";
    page += Legend();
    if (!failures.empty()) {
        page += "<div class=\"failures\"><p>Not reported:</p>\n";
        for (std::string const& failure : failures) {
            page += "<p class=\"faint\">" + Escape(failure) + "</p>\n";
        }
        page += "</div>\n";
    }
    page += "<nav>\n";
    for (std::size_t k = 0; k < reports.size(); ++k) {
        page += Link("file-" + std::to_string(k + 1), reports[k].structure);
    }
    for (std::size_t k = 0; k < chains.size(); ++k) {
        page += Link("chain-" + std::to_string(k + 1), chains[k]);
    }
    page += "</nav>\n<main>\n";
    for (std::size_t k = 0; k < reports.size(); ++k) {
        page += Section(reports[k], "file-" + std::to_string(k + 1));
    }
    for (std::size_t k = 0; k < chains.size(); ++k) {
        page += ChainSection(chains[k], "chain-" + std::to_string(k + 1));
    }
    return page + "</main>\n</body>\n</html>\n";
}

} // namespace CoordinationReport
