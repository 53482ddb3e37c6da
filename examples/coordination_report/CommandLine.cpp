#include "examples/coordination_report/CommandLine.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace CoordinationReport {
namespace {

double ReadCutoff(std::string const& text)
{
    double value = 0.0;
    auto const result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !std::isfinite(value) ||
        value <= 0.0) {
        throw BadUsage("--cutoff wants a distance above 0 in angstrom, not '" + text + "'");
    }
    return value;
}

} // namespace

char const* HelpText()
{
    return R"HELP(usage: coordination_report [options] FILE...

Finds the metal centres of XYZ files, tells how many ligands each has, and
ranks the ideal geometries of that number by their deviation. A folder stands
for all .xyz files in it.

Which atoms are centres
  By default the metals. Of a file with more than three atoms of a metal, which
  is most likely cut from a crystal, one centre of each kind is reported, the
  one nearest to the middle: of one kind are centres of one element with the
  same ligands at the same distances (to 0.02 angstrom). Centres so near the
  edge that ligands may be cut off are left out; the report says how many.
  A file without a metal is reported for the atom with most ligands.
  --centre X      the element X (Cu), the atom with the number X (24), counted
                  from 1 in the order of the file, or both in one (Cu24)
  --all-centres   every metal, or every atom of the element of --centre

Which atoms are ligands
  By default the atoms within 1.3 times the sum of the covalent radii (Cordero
  and others, Dalton Transactions 2008, 2832), without
  - other metals, and
  - atoms that belong to a nearer ligand: bonded to it and more than 1.25 times
    as far from the centre, such as the carbon of a chelating carboxylate.
  --all-contacts  these as well
  --cutoff D      instead, every atom at most D angstrom from the centre,
                  whatever its element

What is written
  For every centre, to the standard output: the coordination number, the
  ligands with their distances, the geometries of that number with their
  deviations, the best first, and which ligand sits on which site of the best.
  Atoms are named by element and number in the file (Cl3). The deviation is the
  sum over all pairs of ligands of the squared difference between measured and
  ideal cosine; 0 is a perfect fit. It exists for twelve geometries with 3 to 6
  ligands. The octahedron and the trigonal antiprism are one shape and have one
  deviation. The fit is the root of the mean squared distance between the
  directions of the ligands and the sites of the ideal polyhedron, turned and
  mirrored to lie on them as best they can, in parts of the bond length.
  --tsv           a table instead, tab-separated, with a line for each centre
                  and geometry: file, centre, element, cn, rank, geometry, code,
                  deviation, labelling (the ligands on the sites 1, 2, ...),
                  ligands in the order of their distances, and fit. A centre
                  without a geometry to rank has one line with rank 0 and -.
  --svg DIR       a picture of each centre, as DIR/FILE-CENTRE.svg
  --html FILE     all pictures and tables on one page
  --scene FILE    the scenes of all centres as graphics primitives, in one
                  archive with the schema number 24; see below
  --ribbon FILE   the chain of atoms in an XYZ file, such as the C-alpha atoms
                  of a protein, as a ribbon: DIR/FILE-ribbon.svg with --svg, on
                  the page with --html; may be given several times
  --help          this text

The colours of bars and polyhedra
  The deviation gives the colour: from cyan at 0 over green and yellow to red
  at 1 (the spectrum "Rainbow 1 Reversed" in 32 bins, not clipped: what is
  above 1 is red too). Polyhedra of the ligands themselves, where no geometry
  has a deviation, are grey.

The archive of --scene
  For each centre, in the order of the report:
  - GraphicsAttributes; the rows of its matrix are the directions to the right,
    up and towards the viewer,
  - SpherePrimitive, the centre and then its ligands, around the origin,
  - CylinderPrimitive, a bond for each ligand, in two colours,
  - TriangleMeshPrimitive, the translucent polyhedron,
  - Text3DPrimitive, a label for each sphere.
  An archive names no types. FILE.list gets what stands in it, so that
    scene_inspect FILE --as "$(cat FILE.list)"
  prints every field. All pictures are drawn from what was loaded back; without
  --scene the archive is in memory.

Exit status: 0 if all went well; 1 if a file was bad, had no such centre or
could not be written (it is named on the standard error, and the others are
still reported); 2 if the command line cannot be followed.
)HELP";
}

Options ReadCommandLine(std::vector<std::string> const& arguments)
{
    Options options;
    bool onlyFiles = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string argument = arguments[i];
        if (onlyFiles || argument.size() < 2 || argument[0] != '-') {
            options.files.push_back(argument);
            continue;
        }
        std::optional<std::string> inlineValue;
        std::size_t const equals = argument.find('=');
        if (equals != std::string::npos) {
            inlineValue = argument.substr(equals + 1);
            argument.resize(equals);
        }
        auto const value = [&]() -> std::string {
            if (inlineValue) {
                return *inlineValue;
            }
            if (i + 1 == arguments.size()) {
                throw BadUsage(argument + " wants a value");
            }
            return arguments[++i];
        };
        if (argument == "--centre" || argument == "--center") {
            options.centre = value();
        } else if (argument == "--cutoff") {
            options.cutoff = ReadCutoff(value());
        } else if (argument == "--svg") {
            options.svgFolder = value();
        } else if (argument == "--html") {
            options.htmlFile = value();
        } else if (argument == "--scene") {
            options.sceneFile = value();
        } else if (argument == "--ribbon") {
            options.chains.push_back(value());
        } else if (inlineValue) {
            throw BadUsage("unknown option " + arguments[i]);
        } else if (argument == "--all-centres" || argument == "--all-centers") {
            options.allCentres = true;
        } else if (argument == "--all-contacts") {
            options.allContacts = true;
        } else if (argument == "--tsv") {
            options.tsv = true;
        } else if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument == "--") {
            onlyFiles = true;
        } else {
            throw BadUsage("unknown option " + argument);
        }
    }
    if (!options.chains.empty() && !options.svgFolder && !options.htmlFile && !options.help) {
        throw BadUsage("--ribbon wants --svg or --html to draw into");
    }
    if (options.files.empty() && options.chains.empty() && !options.help) {
        throw BadUsage("no file is named");
    }
    return options;
}

} // namespace CoordinationReport
