#include "examples/coordination_report/TextReport.h"

#include "examples/shared/Svg.h"

#include <algorithm>

namespace CoordinationReport {
namespace {

std::string Padded(std::string text, std::size_t width)
{
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

/// Text from a file without what upsets a terminal or a table.
std::string Printable(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, ' ');
    return text;
}

std::string Joined(std::vector<std::string> const& words, char const* between)
{
    std::string text;
    for (std::string const& word : words) {
        text += (text.empty() ? "" : between) + word;
    }
    return text;
}

/// Breaks a list after its commas, so that no line gets longer than a screen.
std::string Wrapped(std::string const& text, std::string const& indent)
{
    constexpr std::size_t longest = 96;
    std::string wrapped;
    std::size_t column = indent.size();
    std::size_t begin = 0;
    while (begin < text.size()) {
        std::size_t const comma = text.find(", ", begin);
        std::size_t const end = comma == std::string::npos ? text.size() : comma + 2;
        if (column + (end - begin) > longest + 1 && column > indent.size()) {
            wrapped.back() = '\n'; // in place of the blank
            wrapped += indent;
            column = indent.size();
        }
        wrapped.append(text, begin, end - begin);
        column += end - begin;
        begin = end;
    }
    return wrapped;
}

std::string CentreText(Structure const& structure, RankedCentre const& ranked)
{
    Centre const& centre = ranked.centre;
    std::string text = "  " + structure.NameOf(centre.atom) + ": coordination number " +
                       std::to_string(centre.ligands.size());
    if (centre.alike > 0) {
        text += " (and " + std::to_string(centre.alike) + " more like it)";
    }
    text += "\n";
    if (!centre.ligands.empty()) {
        text += "    ligands    " + Wrapped(LigandText(structure, centre), std::string(15, ' ')) + "\n";
    }
    if (ranked.ranking.candidates.empty()) {
        return text + "    " + Wrapped(NoRankingText(ranked), "    ") + "\n";
    }
    text += "    deviation  fit     geometry\n";
    for (Candidate const& candidate : ranked.ranking.candidates) {
        text +=
            "     " + Padded(DeviationText(candidate.deviation), 10) + Padded(FitText(candidate), 8) +
            Padded(candidate.title, candidate.code.empty() || candidate.code == candidate.title ? 0 : 26) +
            (candidate.code == candidate.title ? "" : candidate.code) + "\n";
    }
    std::vector<std::string> sites = LabellingOf(structure, centre, ranked.ranking.candidates.front());
    for (std::size_t site = 0; site < sites.size(); ++site) {
        sites[site] = std::to_string(site + 1) + " " + sites[site];
    }
    return text + "    sites of " + ranked.ranking.candidates.front().title + ": " + Joined(sites, ", ") +
           "\n";
}

} // namespace

std::string DeviationText(double deviation)
{
    return Examples::Decimal(deviation, 6);
}

std::string FitText(Candidate const& candidate)
{
    return candidate.fit ? Examples::Decimal(*candidate.fit, 4) : "-";
}

std::string LigandText(Structure const& structure, Centre const& centre)
{
    std::vector<std::string> words;
    for (Ligand const& ligand : centre.ligands) {
        words.push_back(structure.NameOf(ligand.atom) + " " + Examples::Decimal(ligand.distance, 3));
    }
    return Joined(words, ", ");
}

std::vector<std::string> LabellingOf(Structure const& structure, Centre const& centre,
                                     Candidate const& candidate)
{
    std::vector<std::string> names;
    for (std::size_t ligand : candidate.ligandOnSite) {
        names.push_back(structure.NameOf(centre.ligands[ligand].atom));
    }
    return names;
}

std::string NoRankingText(RankedCentre const& ranked)
{
    std::string const number = std::to_string(ranked.centre.ligands.size());
    if (ranked.ranking.unmeasured.empty()) {
        return "The catalogue holds no geometry with " + number + (number == "1" ? " ligand." : " ligands.");
    }
    return "No geometry with " + number + " ligands has a deviation; the catalogue holds " +
           Joined(ranked.ranking.unmeasured, ", ") + ".";
}

std::string TextReport(FileReport const& report)
{
    Structure const& structure = report.structure;
    std::string text = structure.FileName() + ", " + std::to_string(structure.atoms.size()) +
                       (structure.atoms.size() == 1 ? " atom\n" : " atoms\n");
    std::string const comment = Printable(structure.comment);
    if (!comment.empty()) {
        // What stands before the first semicolon says what it is; the rest is where it is from.
        std::string const first = comment.substr(0, comment.find(';'));
        text += "  " + first.substr(0, 94) + (first.size() > 94 ? "..." : "") + "\n";
    }
    for (RankedCentre const& ranked : report.centres) {
        text += CentreText(structure, ranked);
    }
    for (std::string const& remark : report.remarks) {
        text += "  (" + remark + ")\n";
    }
    return text + "\n";
}

std::string TsvHeader()
{
    return "file\tcentre\telement\tcn\trank\tgeometry\tcode\tdeviation\tlabelling\tligands\tfit\n";
}

std::string TsvReport(FileReport const& report)
{
    Structure const& structure = report.structure;
    std::string table;
    for (RankedCentre const& ranked : report.centres) {
        Centre const& centre = ranked.centre;
        std::string const begin = Printable(structure.FileName()) + "\t" + structure.NameOf(centre.atom) +
                                  "\t" + structure.atoms[centre.atom].element + "\t" +
                                  std::to_string(centre.ligands.size()) + "\t";
        std::vector<std::string> ligands;
        for (Ligand const& ligand : centre.ligands) {
            ligands.push_back(structure.NameOf(ligand.atom));
        }
        std::string const end = "\t" + (ligands.empty() ? "-" : Joined(ligands, ",")) + "\t";
        if (ranked.ranking.candidates.empty()) {
            table += begin + "0\t-\t-\t-\t-" + end + "-\n";
        }
        int rank = 0;
        for (Candidate const& candidate : ranked.ranking.candidates) {
            table += begin + std::to_string(++rank) + "\t" + candidate.title + "\t" +
                     (candidate.code.empty() ? "-" : candidate.code) + "\t" +
                     Examples::Decimal(candidate.deviation, 9) + "\t" +
                     Joined(LabellingOf(structure, centre, candidate), ",") + end +
                     (candidate.fit ? Examples::Decimal(*candidate.fit, 9) : "-") + "\n";
        }
    }
    return table;
}

} // namespace CoordinationReport
