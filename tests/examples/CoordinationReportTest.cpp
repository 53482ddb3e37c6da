// Runs the programs as a user would.

#include "tests/support/TemporaryFile.h"
#include "vorlane/coordination/CoordinationGeometry.h"

#include "gtest/gtest.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using VorlaneTest::TemporaryFile;

std::string const structures = VORLANE_SOURCE_DIR "/examples/data/structures/";

std::string ReadFile(std::string const& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

struct Outcome
{
    int status;
    std::string out;
    std::string err;
};

Outcome RunProgram(std::string const& program, std::string const& arguments)
{
    TemporaryFile const out("out");
    TemporaryFile const err("err");
    int const result =
        std::system(("'" + program + "' " + arguments + " >'" + out.path + "' 2>'" + err.path + "'").c_str());
    return {WEXITSTATUS(result), ReadFile(out.path), ReadFile(err.path)};
}

Outcome Report(std::string const& arguments)
{
    return RunProgram(VORLANE_COORDINATION_REPORT, arguments);
}

std::vector<std::string> Split(std::string const& text, char separator)
{
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

/// The lines of a tab-separated table, each by the names in the first.
std::vector<std::map<std::string, std::string>> ReadTable(std::string const& text)
{
    std::vector<std::map<std::string, std::string>> rows;
    std::vector<std::string> names;
    for (std::string const& line : Split(text, '\n')) {
        std::vector<std::string> const fields = Split(line, '\t');
        if (names.empty()) {
            names = fields;
            continue;
        }
        EXPECT_EQ(fields.size(), names.size()) << line;
        rows.emplace_back();
        for (std::size_t k = 0; k < std::min(fields.size(), names.size()); ++k) {
            rows.back()[names[k]] = fields[k];
        }
    }
    return rows;
}

/// The numbers of some atoms, from 1: of "Cl3,N10", or of "2,9", which counts from 0.
std::vector<int> AtomNumbers(std::string const& list)
{
    std::vector<int> numbers;
    for (std::string const& name : Split(list, ',')) {
        std::size_t const digits = name.find_first_of("0123456789");
        numbers.push_back(std::stoi(name.substr(digits)) + (digits == 0 ? 1 : 0));
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::map<std::string, std::string> const titleOfColumn = {
    {"trigonal_pyramidal", "trigonalPyramidal"},
    {"t_shaped", "tShaped"},
    {"tetrahedral", "tetrahedral"},
    {"square_planar", "squarePlanar"},
    {"trigonal_planar_pyramidal", "trigonalPlanarPyramidal"},
    {"seesaw_oct", "seeSaw"},
    {"seesaw_tbp", "ss4tbpy5"},
    {"trigonal_bipyramidal", "trigonalBipyramidal"},
    {"square_pyramidal", "squarePlanarPyramidal"},
    {"octahedral", "octahedral"},
    {"trigonal_prismatic", "trigonalPrismatic"},
    {"trigonal_antiprismatic", "trigonalAntiprismatic"},
};

} // namespace

TEST(CoordinationReportTest, RealStructuresGiveTheExpectedGeometriesAndDeviations)
{
    int rows = 0;
    for (auto& expected : ReadTable(ReadFile(structures + "expected.tsv"))) {
        ++rows;
        SCOPED_TRACE(expected["file"] + " " + expected["index"]);
        int const number = std::stoi(expected["index"]) + 1;
        Outcome const outcome =
            Report("--tsv --cutoff " + expected["cutoff"] + " --centre " + expected["element"] +
                   std::to_string(number) + " '" + structures + expected["file"] + "'");
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        auto actual = ReadTable(outcome.out);
        ASSERT_FALSE(actual.empty());
        EXPECT_EQ(actual[0]["cn"], expected["cn"]);
        EXPECT_EQ(AtomNumbers(actual[0]["ligands"]), AtomNumbers(expected["ligands"]));
        std::string const nearest = expected["nearest"];
        EXPECT_EQ(actual[0]["geometry"], nearest == "NA" ? "-" : titleOfColumn.at(nearest));
        std::map<std::string, std::string> deviations;
        for (auto& row : actual) {
            deviations[row["geometry"]] = row["deviation"];
        }
        for (auto const& [column, title] : titleOfColumn) {
            ASSERT_EQ(expected[column] == "NA", deviations.count(title) == 0) << title;
            if (expected[column] != "NA") {
                EXPECT_NEAR(std::stod(deviations[title]), std::stod(expected[column]), 1e-6) << title;
            }
        }
    }
    EXPECT_EQ(rows, 45);
}

TEST(CoordinationReportTest, TheDefaultsFindTheCentresOfAllStructures)
{
    TemporaryFile const page("page.html");
    TemporaryFile const folder("pictures");
    Outcome const outcome =
        Report("--tsv --html '" + page.path + "' --svg '" + folder.path + "' '" + structures + "'");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    std::map<std::string, std::string> numberOfCentre; // coordination numbers by file and centre
    std::map<std::string, std::string> nearest;
    for (auto& row : ReadTable(outcome.out)) {
        std::string const centre = row["file"] + " " + row["centre"];
        numberOfCentre[centre] = row["cn"];
        if (row["rank"] == "1") {
            nearest[centre] = row["geometry"];
        }
    }
    for (auto& expected : ReadTable(ReadFile(structures + "expected.tsv"))) {
        // The sixth oxygen of V2O5, at 2.80 angstrom, lies within 1.3 times the sum of the radii.
        bool const further = expected["file"] == "v2o5_shcherbinaite.xyz";
        std::string const centre =
            expected["file"] + " " + expected["element"] + std::to_string(std::stoi(expected["index"]) + 1);
        if (expected["index"] == "0" || numberOfCentre.count(centre) != 0) {
            EXPECT_EQ(numberOfCentre[centre], further ? "6" : expected["cn"]) << centre;
        }
    }
    EXPECT_EQ(nearest["mos2_2h.xyz Mo1"], "trigonalPrismatic");
    EXPECT_EQ(numberOfCentre["ybco.xyz Cu24"], "4");
    EXPECT_EQ(numberOfCentre["ybco.xyz Y7"], "8");

    std::string const html = ReadFile(page.path);
    for (auto const& [centre, number] : numberOfCentre) {
        std::string const file = centre.substr(0, centre.find(' '));
        std::string const atom = centre.substr(centre.find(' ') + 1);
        EXPECT_NE(html.find(">" + file + "</h2>"), std::string::npos) << file;
        std::string const picture =
            ReadFile(folder.path + "/" + file.substr(0, file.size() - 4) + "-" + atom + ".svg");
        EXPECT_NE(picture.find(">" + atom + " in " + file + "</text>"), std::string::npos) << centre;
        EXPECT_EQ(picture.substr(picture.size() - 7), "</svg>\n") << centre;
    }
    fs::remove_all(folder.path);
}

TEST(CoordinationReportTest, TheReportNamesCentreGeometriesAndSites)
{
    EXPECT_EQ(Report("'" + structures + "cr_co_5.xyz'").out, R"(cr_co_5.xyz, 11 atoms
  pentacarbonylchromium Cr(CO)5 (square pyramidal)
  Cr1: coordination number 5
    ligands    C4 1.835, C3 1.910, C6 1.910, C8 1.910, C10 1.910
    deviation  fit     geometry
     0.000229  0.0068  squarePlanarPyramidal     spy5
     0.765071  0.3320  trigonalBipyramidal       tbpy5
    sites of squarePlanarPyramidal: 1 C4, 2 C3, 3 C8, 4 C6, 5 C10

)");
    Outcome const all = Report("--tsv --all-centres --centre zn '" + structures + "zns_wurtzite.xyz'");
    EXPECT_EQ(all.status, 0);
    std::map<std::string, int> centres;
    for (auto& row : ReadTable(all.out)) {
        ++centres[row["centre"]];
    }
    EXPECT_EQ(centres.size(), 57u);
    auto const number = [](std::string const& options) {
        return ReadTable(Report("--tsv " + options + " '" + structures + "cr_ox_3_3minus.xyz'").out)[0]["cn"];
    };
    EXPECT_EQ(number(""), "6");
    EXPECT_EQ(number("--all-contacts"), "12"); // the carbons of the oxalate too
    EXPECT_EQ(number("--cutoff=1.98"), "3");
}

TEST(CoordinationReportTest, BadFilesAreNamedAndTheOthersStillReported)
{
    struct Case
    {
        char const* text;
        char const* complaint; ///< what follows the path
    };
    Case const cases[] = {
        {"", ": the file is empty"},
        {"x\nc\nO 0 0 0\n", ":1: the number of atoms is wanted here, not 'x'"},
        {"0\nc\n", ":1: the number of atoms is wanted here, not '0'"},
        {"1.5\nc\nO 0 0 0\n", ":1: the number of atoms is wanted here, not '1.5'"},
        {"99999999999999999999\nc\n", ":1: the number of atoms is wanted here, not '99999999999999999999'"},
        {"3000000000\nc\n", ":1: the number of atoms is wanted here, not '3000000000'"},
        {"3\nc\nO 0 0 0\nH 1 0 0\n", ":5: line 1 promises 3 atoms, but the file ends after 2"},
        {"2\nc\nO 0 0 0\n\nH 1 0 0\n", ":4: line 1 promises 2 atoms, but after 1 comes a blank line"},
        {"1\nc\nO 0 0 0\nH 1 0 0\n", ":4: line 1 promises 1 atom, but there are more lines"},
        {"2\r\nc\r\nO 0 0 0\r\nH 1 1,5 0\r\n", ":4: the coordinate y is no number: '1,5'"},
        {"1\nc\nO 0 nan 0\n", ":3: the coordinate y is no number: 'nan'"},
        {"1\nc\nO 0 0x10 0\n", ":3: the coordinate y is no number: '0x10'"},
        {"1\nc\nO 0 0 1e999\n", ":3: the coordinate z is no number: '1e999'"},
        {"1\nc\nO 0 0 +-1\n", ":3: the coordinate z is no number: '+-1'"},
        {"1\nc\nO 0 0\n", ":3: the coordinate z is missing"},
        {"1\nc\nXx 0 0 0\n", ":3: 'Xx' is no element"},
    };
    std::string const good = " '" + structures + "co_nh3_6.xyz'";
    for (Case const& bad : cases) {
        TemporaryFile const file("bad.xyz");
        std::ofstream(file.path, std::ios::binary) << bad.text;
        Outcome const outcome = Report("'" + file.path + "'" + good);
        EXPECT_EQ(outcome.status, 1) << bad.text;
        EXPECT_EQ(outcome.err, "coordination_report: " + file.path + bad.complaint + "\n");
        EXPECT_NE(outcome.out.find("Co1: coordination number 6"), std::string::npos) << bad.text;
    }
    TemporaryFile const absent("absent");
    TemporaryFile const apart("apart.xyz");
    std::ofstream(apart.path) << "2\nc\nC 0 0 0\nC 9 0 0\n";
    struct Line
    {
        std::string arguments;
        int status;
        std::string complaint;
    };
    Line const lines[] = {
        {"'" + absent.path + "'" + good, 1, absent.path + ": no such file"},
        {"--centre Fe" + good, 1, "co_nh3_6.xyz: there is no Fe in it"},
        {"--centre 26" + good, 1, "co_nh3_6.xyz: there is no atom 26 among 25"},
        {"--centre N1" + good, 1, "co_nh3_6.xyz: the atom 1 is Co, not N"},
        {"--centre Qq" + good, 1, "--centre wants an element, a number or both, not 'Qq'"},
        {"--html '" + absent.path + "/page.html'" + good, 1, "/page.html: cannot be written"},
        {"--svg /dev/null" + good, 1, "/dev/null: cannot be made a folder"},
        {"--scene /dev/full" + good, 1, "/dev/full: the scenes are not stored: cannot write"},
        {"--scene /dev/null" + good, 1, "/dev/null: the scenes are not stored: "},
        {"--scene '" + absent.path + "/scene'" + good, 1, "/scene: the scenes are not stored: cannot open"},
        {"--html /dev/null --ribbon '" + absent.path + "'" + good, 1, absent.path + ": no such file"},
        {"--html /dev/null --ribbon '" + apart.path + "'" + good, 1,
         "no two neighbours are near enough for a ribbon"},
        {"--ribbon" + good, 2, "--ribbon wants --svg or --html to draw into"},
        {"", 2, "no file is named"},
        {"--cutoff 0" + good, 2, "--cutoff wants a distance above 0 in angstrom, not '0'"},
        {"--cutoff", 2, "--cutoff wants a value"},
        {"--tsv=yes" + good, 2, "unknown option --tsv=yes"},
        {"--colour" + good, 2, "unknown option --colour"},
    };
    for (Line const& line : lines) {
        Outcome const outcome = Report(line.arguments);
        EXPECT_EQ(outcome.status, line.status) << line.arguments;
        EXPECT_NE(outcome.err.find(line.complaint), std::string::npos) << line.arguments << "\n"
                                                                       << outcome.err;
    }
    Outcome const help = Report("--help");
    EXPECT_EQ(help.status, 0);
    for (char const* option : {"--centre", "--all-centres", "--cutoff", "--all-contacts", "--tsv", "--svg",
                               "--html", "--scene", "--ribbon"}) {
        EXPECT_NE(help.out.find(option), std::string::npos) << option;
    }
}

TEST(CoordinationReportTest, ScenesAreStoredAndPicturesDrawnFromWhatIsLoaded)
{
    TemporaryFile const scene("scene");
    TemporaryFile const list("scene.list");
    TemporaryFile const with("with.html");
    TemporaryFile const without("without.html");
    ASSERT_EQ(scene.path + ".list", list.path);
    Outcome const stored =
        Report("--scene '" + scene.path + "' --html '" + with.path + "' '" + structures + "'");
    ASSERT_EQ(stored.status, 0) << stored.err;
    EXPECT_EQ(Report("--html '" + without.path + "' '" + structures + "'").status, 0);
    EXPECT_EQ(ReadFile(with.path), ReadFile(without.path));

    std::string const inspect = "'" + scene.path + "' --as \"$(cat '" + list.path + "')\"";
    Outcome const inspected = RunProgram(VORLANE_SCENE_INSPECT, inspect);
    EXPECT_EQ(inspected.status, 0) << inspected.out << inspected.err;
    // The list says where the file ends: one byte more or less is one too many.
    std::ofstream(scene.path, std::ios::binary | std::ios::app) << 'x';
    EXPECT_EQ(RunProgram(VORLANE_SCENE_INSPECT, inspect).status, 1);

    ASSERT_EQ(Report("--scene '" + scene.path + "' '" + structures + "co_nh3_6.xyz'").status, 0);
    EXPECT_EQ(ReadFile(list.path), "attributes,sphere*7,cylinder*6,mesh,text3d*7\n");
    Outcome const one = RunProgram(VORLANE_SCENE_INSPECT, inspect + " --entries 99");
    EXPECT_EQ(one.status, 0);
    // An octahedron: eight faces with three corners of their own, all translucent.
    EXPECT_NE(one.out.find("mesh.triangles count = 8\n"), std::string::npos) << one.out;
    EXPECT_NE(one.out.find("text3d[6].text = \"N7\""), std::string::npos);
}

TEST(CoordinationReportTest, FitsAndPicturesAreTrueToTheStructure)
{
    TemporaryFile const file("tetrahedron.xyz");
    std::ofstream(file.path, std::ios::binary)
        << "5\nc\nZn 0 0 0\nCl 1 1 1\nCl 1 -1 -1\nCl -1 1 -1\nCl -1 -1 1\n";
    std::map<std::string, double> fits;
    for (auto& row : ReadTable(Report("--tsv '" + file.path + "'").out)) {
        fits[row["geometry"]] = std::stod(row["fit"]);
    }
    EXPECT_NEAR(fits["tetrahedral"], 0.0, 1e-7);
    // Each direction lies on the square but for its height, which is a third of it squared.
    EXPECT_NEAR(fits["squarePlanar"], std::sqrt(2.0 - 2.0 * std::sqrt(2.0 / 3.0)), 1e-8);

    TemporaryFile const folder("drawn");
    std::string const chain = VORLANE_SOURCE_DIR "/examples/data/chains/1c1n_ca.xyz";
    ASSERT_EQ(Report("--svg '" + folder.path + "' --ribbon '" + chain + "' '" + structures +
                     "catio3_perovskite.xyz'")
                  .status,
              0);
    std::string const docs = VORLANE_SOURCE_DIR "/docs/";
    EXPECT_EQ(ReadFile(folder.path + "/1c1n_ca-ribbon.svg"), ReadFile(docs + "ribbon.svg"));
    EXPECT_EQ(ReadFile(folder.path + "/catio3_perovskite-Ti1.svg"), ReadFile(docs + "report.svg"))
        << "the picture of the documents is old";
    fs::remove_all(folder.path);
}

TEST(GeometryGalleryTest, DrawsEachGeometryThatHasIdealSites)
{
    Outcome const outcome = RunProgram(VORLANE_GEOMETRY_GALLERY, "");
    EXPECT_EQ(outcome.status, 0);
    for (int number = 1; number <= 30; ++number) {
        Orrin::LegacyArray<Spatia::Point3d> sites;
        auto const type = static_cast<Vorlane::CoordinationGeometryType>(number);
        bool const drawn = Vorlane::CoordinationGeometry::GetCoordinates(type, sites) > 0;
        EXPECT_EQ(outcome.out.find(">" + std::to_string(number) + " \u00b7 ") != std::string::npos, drawn)
            << number;
    }
    EXPECT_NE(outcome.out.find(">60\u00b0, 90\u00b0, 120\u00b0, 180\u00b0<"), std::string::npos);
    EXPECT_EQ(RunProgram(VORLANE_GEOMETRY_GALLERY, "/no/such/folder/gallery.svg").status, 1);
    EXPECT_EQ(RunProgram(VORLANE_GEOMETRY_GALLERY, "--colour").status, 2);
}
