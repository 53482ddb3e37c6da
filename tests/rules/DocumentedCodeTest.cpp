// Code and output shown in documents are those of programs that the tests build and run.

#include "tests/support/Files.h"

#include <filesystem>
#include <functional>
#include <regex>

namespace fs = std::filesystem;
using namespace VorlaneTest;

namespace {

fs::path const root = VORLANE_SOURCE_DIR;

/// Checks each place of the documents that an expression matches, and gives their number.
int ForEachPlace(char const* expression,
                 std::function<void(fs::path const&, std::smatch const&)> const& check)
{
    std::regex const regex(expression);
    int places = 0;
    for (fs::path const& folder : {root, root / "docs"}) {
        for (fs::directory_entry const& entry : fs::directory_iterator(folder)) {
            std::string const text = entry.path().extension() == ".md" ? ReadFile(entry.path()) : "";
            for (std::sregex_iterator place(text.begin(), text.end(), regex), end; place != end; ++place) {
                check(entry.path(), *place);
                ++places;
            }
        }
    }
    return places;
}

std::string Unindented(std::string const& text)
{
    return std::regex_replace(text, std::regex("\n +"), "\n");
}

} // namespace

// A block that follows a line <!-- file: PATH --> must be that file, one that follows <!-- part of: PATH -->
// must stand in it, and one that follows <!-- output: NAME --> must be what the example program of that name
// prints. C++ without such a line is not allowed.
TEST(DocumentedCodeTest, BlocksAreTheFilesAndOutputsThatTheyName)
{
    auto const checkBlock = [](fs::path const& document, std::smatch const& block) {
        SCOPED_TRACE(document.string() + " shows " + block.str(2));
        std::string const file = ReadFile(root / block.str(2));
        if (block[1] == "part of") {
            EXPECT_NE(Unindented(file).find(Unindented("\n" + block.str(3))), std::string::npos);
        } else {
            std::string const program = VORLANE_EXAMPLES_DIR "/" + block.str(2);
            EXPECT_EQ(block[3], block[1] == "file" ? file : RunCommand("'" + program + "'").out);
        }
    };
    EXPECT_GT(ForEachPlace("<!-- (file|part of|output): ([^ ]+) -->\n+```[a-z]*\n([^`]*)```", checkBlock), 0);
    EXPECT_EQ(ForEachPlace("[^>\n]\n+```cpp",
                           [](fs::path const& document, std::smatch const&) {
                               ADD_FAILURE() << document << " shows code of no file";
                           }),
              0);
}

TEST(DocumentedCodeTest, LinksLeadSomewhere)
{
    auto const checkLink = [](fs::path const& document, std::smatch const& link) {
        EXPECT_TRUE(fs::exists(document.parent_path() / link.str(1))) << document << " links to " << link[1];
    };
    EXPECT_GT(ForEachPlace("\\]\\(([^):#]+)(#[^)]*)?\\)", checkLink), 0);
}
