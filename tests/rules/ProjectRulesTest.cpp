// The rules of the project that a compiler does not see, read off the files.

#include "tests/support/CaseTable.h"
#include "tests/support/Files.h"

#include <cctype>
#include <filesystem>
#include <regex>
#include <utility>

namespace fs = std::filesystem;
using namespace VorlaneTest;

namespace {

fs::path const root = VORLANE_SOURCE_DIR;

/// The headers and sources below the folders, by their paths from the root.
std::map<std::string, std::string> SourcesBelow(std::vector<std::string> const& folders)
{
    std::map<std::string, std::string> texts;
    for (std::string const& folder : folders) {
        for (fs::directory_entry const& entry : fs::recursive_directory_iterator(root / folder)) {
            fs::path const& path = entry.path();
            if (path.extension() == ".h" || path.extension() == ".cpp") {
                texts[fs::relative(path, root).generic_string()] = ReadFile(path);
            }
        }
    }
    EXPECT_GT(texts.size(), 10u);
    return texts;
}

/// What a text has of an expression's group, each time that it matches.
std::vector<std::string> AllOf(std::string const& text, char const* expression, int group)
{
    std::regex const regex(expression);
    return {std::sregex_token_iterator(text.begin(), text.end(), regex, group), {}};
}

std::vector<std::string> const everything = {"platform",   "vorlane", "tests",
                                             "benchmarks", "fuzz",    "examples"};

} // namespace

TEST(ProjectRulesTest, IncludesKeepToTheWalls)
{
    std::vector<Case> const walls = ReadCases("rules/walls.txt", "includes");
    for (auto const& [file, text] : SourcesBelow({"platform", "vorlane"})) {
        for (std::string const& included : AllOf(text, "(^|\n)[ \t]*#[ \t]*include[ \t]*\"([^\"]*)\"", 2)) {
            SCOPED_TRACE(file + " includes " + included);
            auto const wall = std::find_if(walls.begin(), walls.end(), [&file = file](Case const& row) {
                return std::regex_match(file, std::regex(row.at("file")));
            });
            ASSERT_NE(wall, walls.end());
            EXPECT_TRUE(std::regex_match(included, std::regex(wall->at("included"))));
            EXPECT_TRUE(fs::exists(root / included) || fs::exists(root / (included + ".in")));
            bool const isInternal = included.find("Internal.h") != std::string::npos;
            EXPECT_TRUE(!isInternal || fs::path(file).parent_path() == fs::path(included).parent_path() ||
                        file == "vorlane/foundation/LoadTimeObjects.cpp");
        }
    }
}

// The list may stand in the folder of the file or in one above; a program of one file may be named by the
// file without its ending.
TEST(ProjectRulesTest, EveryFileBelongsToATarget)
{
    for (auto const& [file, text] : SourcesBelow(everything)) {
        fs::path const path(file);
        std::regex const name("(^|[ \t\n(\"/])" + path.stem().string() + "(\\.cpp)?([ \t\n)\"]|$)");
        bool isListed = path.extension() == ".h";
        for (fs::path folder = path.parent_path(); !folder.empty() && !isListed;
             folder = folder.parent_path()) {
            isListed = std::regex_search(ReadFile(root / folder / "CMakeLists.txt"), name);
        }
        EXPECT_TRUE(isListed) << file << " belongs to no target";
    }
}

TEST(ProjectRulesTest, LibraryCallsNothingThatDependsOnTheLocale)
{
    std::regex const noCode("//.*|/\\*[^*]*\\*/|\"(\\\\.|[^\"\\\\])*\"");
    for (auto const& [file, text] : SourcesBelow({"platform", "vorlane"})) {
        for (std::string const& call :
             AllOf(std::regex_replace(text, noCode, ""),
                   "\\b(strto[dfl]|strtold|strtoul|strtoll|atof|atoi|atol|sscanf|setlocale|localeconv|"
                   "isspace|isalpha|isalnum|isdigit|isupper|islower|ispunct|isprint|isxdigit|tolower|toupper|"
                   "strcoll|strcasecmp|mbstowcs|wcstombs|mbrtowc|wcrtomb|sto[dfil]|stol|stoul|stoll|"
                   "to_wstring|ostringstream|istringstream|stringstream)\\s*\\(",
                   1)) {
            ADD_FAILURE() << file << " calls " << call;
        }
    }
}

TEST(ProjectRulesTest, EveryHeaderHasAGuardThatNamesIt)
{
    for (auto const& [file, text] : SourcesBelow(everything)) {
        std::string guard;
        for (char const c : fs::path(file).stem().string()) {
            guard += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
        EXPECT_TRUE(fs::path(file).extension() == ".cpp" ||
                    std::regex_search(text, std::regex("#ifndef VORLANE_[A-Z0-9_]*" + guard + "_H\n")))
            << file;
    }
}
