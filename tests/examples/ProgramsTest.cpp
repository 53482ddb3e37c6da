// Runs the programs as a user would.

#include "tests/support/CaseTable.h"
#include "tests/support/Files.h"

#include <cmath>
#include <filesystem>
#include <regex>
#include <set>

using namespace VorlaneTest;

namespace fs = std::filesystem;

namespace {

std::string const structures = VORLANE_SOURCE_DIR "/examples/data/structures";

/// Programs run in a folder of their own, where a file holds two atoms that are far apart.
class ProgramsTest : public testing::Test
{
protected:
    ProgramsTest() : m_folder("programs"), m_before(fs::current_path())
    {
        fs::create_directory(m_folder.path);
        fs::current_path(m_folder.path);
        Write("apart", "2\nc\nC 0 0 0\nC 9 0 0\n");
        setenv("structures", structures.c_str(), 1);
        setenv("chains", VORLANE_SOURCE_DIR "/examples/data/chains", 1);
    }
    ~ProgramsTest() override
    {
        fs::current_path(m_before);
        fs::remove_all(m_folder.path);
    }

    static void Write(std::string const& path, std::string const& bytes)
    {
        std::ofstream(path, std::ios::binary) << bytes;
    }

private:
    TemporaryFile const m_folder;
    fs::path const m_before;
};

Outcome RunProgram(std::string const& program, std::string const& arguments)
{
    return RunCommand("'" VORLANE_EXAMPLES_DIR "/" + program + "' " + arguments);
}

/// The status, and pieces of what is written, with bars between them.
void CheckOutcome(Outcome const& outcome, Case const& row)
{
    EXPECT_EQ(std::to_string(outcome.status), row.at("status")) << row.at("where") << '\n' << outcome.err;
    for (std::string const& piece : Split(row.at("shows"), '|')) {
        EXPECT_NE((outcome.out + outcome.err).find(piece), std::string::npos)
            << row.at("where") << " shows no " << piece << '\n'
            << outcome.out.substr(0, 2000) << outcome.err;
    }
}

std::ptrdiff_t Count(std::string const& text, char const* expression)
{
    std::regex const regex(expression);
    return std::distance(std::sregex_iterator(text.begin(), text.end(), regex), {});
}

using Rows = std::vector<Case>;

/// The lines of a tab-separated table, each by the names in the first.
Rows ReadTable(std::string const& text)
{
    std::vector<std::string> const lines = Split(text, '\n');
    Rows rows;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        std::vector<std::string> const names = Split(lines[0], '\t');
        std::vector<std::string> const fields = Split(lines[i], '\t');
        EXPECT_EQ(fields.size(), names.size()) << lines[i];
        rows.emplace_back();
        for (std::size_t k = 0; k < std::min(fields.size(), names.size()); ++k) {
            rows.back()[names[k]] = fields[k];
        }
    }
    return rows;
}

Rows Report(std::string const& arguments)
{
    Outcome const outcome = RunProgram("coordination_report", "--tsv " + arguments);
    EXPECT_EQ(outcome.status, 0) << arguments;
    EXPECT_EQ(outcome.err, "") << arguments;
    return ReadTable(outcome.out);
}

/// The numbers of some atoms, from 1: of "Cl3,N10", or of "2,9", which counts from 0.
std::multiset<int> AtomNumbers(std::string const& list)
{
    std::multiset<int> numbers;
    for (std::string const& name : Split(list, ',')) {
        std::size_t const digits = name.find_first_of("0123456789");
        numbers.insert(std::stoi(name.substr(digits)) + (digits == 0 ? 1 : 0));
    }
    return numbers;
}

} // namespace

TEST_F(ProgramsTest, AnswerTheirCalls)
{
    for (Case const& row : ReadCases("examples/commands.txt", "calls")) {
        CheckOutcome(RunProgram(row.at("program"), row.at("arguments")), row);
    }
}

TEST_F(ProgramsTest, NameBadFilesAndStillReportTheOthers)
{
    for (Case const& row : ReadCases("examples/commands.txt", "bad files")) {
        Write("bad.xyz", row.at("text"));
        Outcome const outcome = RunProgram("coordination_report", "bad.xyz $structures/co_nh3_6.xyz");
        EXPECT_EQ(outcome.status, 1) << row.at("where");
        EXPECT_EQ(outcome.err, "coordination_report: bad.xyz" + row.at("complaint") + "\n");
        EXPECT_NE(outcome.out.find("Co1: coordination number 6"), std::string::npos) << row.at("where");
    }
}

TEST_F(ProgramsTest, DrawThePicturesOfTheDocuments)
{
    std::string const docs = VORLANE_SOURCE_DIR "/docs/";
    EXPECT_EQ(RunProgram("ribbon", "$chains/1c1n_ca.xyz ribbon.svg").status, 0);
    EXPECT_EQ(ReadFile("ribbon.svg"), ReadFile(docs + "ribbon.svg"));
    EXPECT_EQ(RunProgram("coordination_report",
                         "--svg drawn --ribbon $chains/1c1n_ca.xyz $structures/catio3_perovskite.xyz")
                  .status,
              0);
    EXPECT_EQ(ReadFile("drawn/1c1n_ca-ribbon.svg"), ReadFile(docs + "ribbon.svg"));
    EXPECT_EQ(ReadFile("drawn/catio3_perovskite-Ti1.svg"), ReadFile(docs + "report.svg"));

    EXPECT_EQ(RunProgram("geometry_gallery", "").out, ReadFile(docs + "geometry_gallery.svg"));
    EXPECT_EQ(RunProgram("ramp_swatches", "swatches.svg").status, 0);
    EXPECT_EQ(ReadFile("swatches.svg"), ReadFile(docs + "ramp_swatches.svg"));
}

TEST_F(ProgramsTest, DrawFromStoredScenesAndInspectThem)
{
    EXPECT_EQ(RunProgram("coordination_report", "--scene scene --html with.html $structures").status, 0);
    EXPECT_EQ(RunProgram("coordination_report", "--html without.html $structures").status, 0);
    EXPECT_EQ(ReadFile("with.html"), ReadFile("without.html"));
    std::string const inspect = "scene --as \"$(cat scene.list)\"";
    EXPECT_EQ(RunProgram("scene_inspect", inspect).status, 0);
    EXPECT_EQ(RunProgram("coordination_report", "--scene scene $structures/co_nh3_6.xyz").status, 0);
    EXPECT_EQ(ReadFile("scene.list"), "attributes,sphere*7,cylinder*6,mesh,text3d*7\n");
    std::string const fields = RunProgram("scene_inspect", inspect + " --entries 99").out;
    // An octahedron: eight faces with three corners of their own, all translucent.
    EXPECT_EQ(Count(fields, "mesh.triangles count = 8\n"), 1);
    EXPECT_EQ(Count(fields, "text3d\\[6\\].text = \"N7\""), 1);
    for (Case const& row : ReadCases("examples/commands.txt", "archives")) {
        Write("bytes", row.at("bytes"));
        CheckOutcome(RunProgram("scene_inspect", "bytes --as " + row.at("kinds")), row);
    }
}

TEST_F(ProgramsTest, ReportCentresAndHowWellTheyFit)
{
    std::set<std::string> centres;
    for (Case const& row : Report("--all-centres --centre zn $structures/zns_wurtzite.xyz")) {
        centres.insert(row.at("centre"));
    }
    EXPECT_EQ(centres.size(), 57u);
    EXPECT_EQ(Report("$structures/cr_ox_3_3minus.xyz")[0].at("cn"), "6");
    EXPECT_EQ(Report("--all-contacts $structures/cr_ox_3_3minus.xyz")[0].at("cn"),
              "12"); // the carbons of the oxalate too
    EXPECT_EQ(Report("--cutoff=1.98 $structures/cr_ox_3_3minus.xyz")[0].at("cn"), "3");

    Write("tetrahedron.xyz", "5\nc\nZn 0 0 1e-999\nCl 1 1 1\nCl 1 -1 -1\nCl -1 1 -1\nCl -1 -1 1\n");
    std::map<std::string, double> fits;
    for (Case const& row : Report("tetrahedron.xyz")) {
        fits[row.at("geometry")] = std::stod(row.at("fit"));
    }
    EXPECT_NEAR(fits["tetrahedral"], 0.0, 1e-7);
    // Each direction lies on the square but for its height, which is a third of it squared.
    EXPECT_NEAR(fits["squarePlanar"], std::sqrt(2.0 - 2.0 * std::sqrt(2.0 / 3.0)), 1e-8);
}

TEST_F(ProgramsTest, RealStructuresGiveTheExpectedGeometriesAndDeviations)
{
    std::map<std::string, std::string> numberByDefault; // coordination numbers by file and centre
    for (Case const& row : Report("--html page.html --svg pictures $structures")) {
        std::string const& file = row.at("file");
        std::string const& centre = row.at("centre");
        numberByDefault[file + centre] = row.at("cn");
        std::string const picture =
            ReadFile("pictures/" + fs::path(file).stem().string() + "-" + centre + ".svg");
        EXPECT_EQ(Count(picture, (">" + centre + " in " + file + "</text>[^]*</svg>\n$").c_str()), 1)
            << file << centre;
        EXPECT_NE(ReadFile("page.html").find(">" + file + "</h2>"), std::string::npos) << file;
    }
    EXPECT_EQ(numberByDefault["ybco.xyzCu24"], "4");
    EXPECT_EQ(numberByDefault["ybco.xyzY7"], "8");
    Rows const expectedRows = ReadTable(ReadFile(structures + "/expected.tsv"));
    for (Case const& expected : expectedRows) {
        std::string const& file = expected.at("file");
        std::string const centre =
            expected.at("element") + std::to_string(std::stoi(expected.at("index")) + 1);
        SCOPED_TRACE(file + " " + centre);
        Rows const actual =
            Report("--cutoff " + expected.at("cutoff") + " --centre " + centre + " $structures/" + file);
        ASSERT_FALSE(actual.empty());
        EXPECT_EQ(actual[0].at("cn"), expected.at("cn"));
        EXPECT_EQ(AtomNumbers(actual[0].at("ligands")), AtomNumbers(expected.at("ligands")));
        if (expected.at("index") == "0" || numberByDefault.count(file + centre) != 0) {
            // The sixth oxygen of V2O5, at 2.80 angstrom, lies within 1.3 times the sum of the radii.
            bool const isFurther = file == "v2o5_shcherbinaite.xyz";
            EXPECT_EQ(numberByDefault[file + centre], isFurther ? "6" : expected.at("cn"));
        }
        std::map<std::string, std::string> deviations;
        for (Case const& row : actual) {
            deviations[row.at("geometry")] = row.at("deviation");
        }
        std::string nearest = "-";
        for (Case const& name : ReadCases("examples/commands.txt", "geometries")) {
            std::string const& deviation = expected.at(name.at("column"));
            std::string const& title = name.at("title");
            nearest = name.at("column") == expected.at("nearest") ? title : nearest;
            ASSERT_EQ(deviation == "NA", deviations.count(title) == 0) << title;
            EXPECT_TRUE(deviation == "NA" ||
                        std::fabs(std::stod(deviations[title]) - std::stod(deviation)) < 1e-6)
                << title;
        }
        EXPECT_EQ(actual[0].at("geometry"), nearest);
    }
    EXPECT_EQ(expectedRows.size(), 45u);
}
