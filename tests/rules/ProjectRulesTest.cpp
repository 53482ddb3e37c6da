// The rules of the project that a compiler does not see, read off the files.

#include "gtest/gtest.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

fs::path const root = VORLANE_SOURCE_DIR;

/// The file that may look up: it fixes the order of the objects built at load, wherever they belong.
char const* const loadTimeObjects = "vorlane/foundation/LoadTimeObjects.cpp";

struct SourceFile
{
    std::string path; ///< from the root
    std::string text;
};

std::string ReadFile(fs::path const& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// The headers and sources below the folders, and not none of them.
std::vector<SourceFile> SourcesBelow(std::vector<std::string> const& folders)
{
    std::vector<SourceFile> files;
    for (std::string const& folder : folders) {
        if (!fs::exists(root / folder)) {
            continue;
        }
        for (fs::directory_entry const& entry : fs::recursive_directory_iterator(root / folder)) {
            std::string const extension = entry.path().extension().string();
            if (entry.is_regular_file() && (extension == ".h" || extension == ".cpp")) {
                files.push_back({fs::relative(entry.path(), root).generic_string(), ReadFile(entry.path())});
            }
        }
    }
    EXPECT_FALSE(files.empty());
    return files;
}

bool StartsWith(std::string const& text, std::string const& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

/// The files that a file includes with quotation marks.
std::vector<std::string> IncludesOf(SourceFile const& file)
{
    static std::regex const include("(?:^|\n)[ \t]*#[ \t]*include[ \t]*\"([^\"]*)\"");
    std::vector<std::string> result;
    for (std::sregex_iterator match(file.text.begin(), file.text.end(), include), end; match != end;
         ++match) {
        result.push_back((*match)[1]);
    }
    return result;
}

/// The text without comments and without what stands between quotation marks.
std::string CodeOf(std::string const& text)
{
    std::string code;
    enum
    {
        code_,
        line,
        block,
        quoted
    } state = code_;
    char quote = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char const c = text[i];
        char const next = i + 1 < text.size() ? text[i + 1] : '\0';
        switch (state) {
        case code_:
            if (c == '/' && next == '/') {
                state = line;
            } else if (c == '/' && next == '*') {
                state = block;
            } else if (c == '"' ||
                       (c == '\'' && !(i > 0 && std::isalnum(static_cast<unsigned char>(text[i - 1]))))) {
                state = quoted;
                quote = c;
            } else {
                code.push_back(c);
            }
            break;
        case line:
            if (c == '\n') {
                code.push_back(c);
                state = code_;
            }
            break;
        case block:
            if (c == '*' && next == '/') {
                ++i;
                state = code_;
            }
            break;
        case quoted:
            if (c == '\\') {
                ++i;
            } else if (c == quote) {
                state = code_;
            }
            break;
        }
    }
    return code;
}

/// Which folder of the platform a file may include: the walls of the design.
bool MayInclude(std::string const& file, std::string const& included)
{
    if (StartsWith(file, "platform/")) {
        return StartsWith(included, "platform/");
    }
    if (StartsWith(included, "platform/framework/")) {
        return file == "vorlane/foundation/FrameworkSurface.h";
    }
    if (StartsWith(included, "platform/spatia/") || StartsWith(included, "platform/orrin/")) {
        return file == "vorlane/foundation/ValueTypes.h";
    }
    if (StartsWith(included, "platform/lumora/")) {
        return StartsWith(file, "vorlane/colour/") || StartsWith(file, "vorlane/persistence/");
    }
    return StartsWith(included, "vorlane/");
}

std::string FolderOf(std::string const& path)
{
    return path.substr(0, path.rfind('/'));
}

} // namespace

TEST(ProjectRulesTest, IncludesKeepToTheWalls)
{
    for (SourceFile const& file : SourcesBelow({"platform", "vorlane"})) {
        for (std::string const& included : IncludesOf(file)) {
            EXPECT_TRUE(MayInclude(file.path, included)) << file.path << " includes " << included;
            EXPECT_TRUE(fs::exists(root / included) || fs::exists(root / (included + ".in")))
                << file.path << " includes " << included;
            bool const internal = included.find("Internal.h") != std::string::npos;
            EXPECT_TRUE(!internal || FolderOf(file.path) == FolderOf(included) ||
                        file.path == loadTimeObjects)
                << file.path << " includes " << included << ", which is internal to its folder";
        }
    }
}

// The foundation lies below everything. The two files that look up are the one that includes all public
// headers and the one that fixes the order of the objects built at load.
TEST(ProjectRulesTest, SubsystemsFormNoCircle)
{
    std::vector<std::pair<std::string, std::string>> arrows;
    for (SourceFile const& file : SourcesBelow({"vorlane"})) {
        if (file.path == "vorlane/VorlaneCore.h" || file.path == loadTimeObjects) {
            continue;
        }
        for (std::string const& included : IncludesOf(file)) {
            std::string const from = FolderOf(file.path);
            std::string const to = FolderOf(included);
            if (StartsWith(to, "vorlane/") && from != to) {
                EXPECT_NE(from, "vorlane/foundation") << file.path << " includes " << included;
                arrows.emplace_back(from, to);
            }
        }
    }
    // Taking away, again and again, what depends on nothing more must leave nothing.
    std::size_t before = 0;
    do {
        before = arrows.size();
        std::vector<std::pair<std::string, std::string>> rest;
        for (auto const& arrow : arrows) {
            bool const targetIsFree = std::none_of(
                arrows.begin(), arrows.end(), [&](auto const& other) { return other.first == arrow.second; });
            if (!targetIsFree) {
                rest.push_back(arrow);
            }
        }
        arrows.swap(rest);
    } while (arrows.size() < before);
    for (auto const& arrow : arrows) {
        ADD_FAILURE() << "in a circle: " << arrow.first << " -> " << arrow.second;
    }
}

TEST(ProjectRulesTest, EveryFileBelongsToATarget)
{
    for (SourceFile const& file :
         SourcesBelow({"platform", "vorlane", "tests", "benchmarks", "fuzz", "examples"})) {
        if (file.path.substr(file.path.size() - 4) != ".cpp") {
            continue;
        }
        // The list may stand in the folder of the file or in one above; a program of one file may be named by
        // the file without its ending.
        fs::path const path(file.path);
        std::regex const name("(^|[ \t\n(\"/])" + path.stem().string() + "(\\.cpp)?([ \t\n)\"]|$)");
        bool listed = false;
        for (fs::path folder = path.parent_path(); !folder.empty() && !listed;
             folder = folder.parent_path()) {
            listed = std::regex_search(ReadFile(root / folder / "CMakeLists.txt"), name);
        }
        EXPECT_TRUE(listed) << file.path << " belongs to no target";
    }
}

TEST(ProjectRulesTest, LibraryCallsNothingThatDependsOnTheLocale)
{
    std::regex const forbidden("\\b(strto[dfl]|strtold|strtoul|strtoll|atof|atoi|atol|sscanf|setlocale|"
                               "localeconv|isspace|isalpha|isalnum|"
                               "isdigit|isupper|islower|ispunct|isprint|isxdigit|tolower|toupper|strcoll|"
                               "strcasecmp|mbstowcs|wcstombs|"
                               "mbrtowc|wcrtomb|sto[dfil]|stol|stoul|stoll|to_wstring|ostringstream|"
                               "istringstream|stringstream)\\s*\\(");
    for (SourceFile const& file : SourcesBelow({"platform", "vorlane"})) {
        std::string const code = CodeOf(file.text);
        for (std::sregex_iterator match(code.begin(), code.end(), forbidden), end; match != end; ++match) {
            ADD_FAILURE() << file.path << " calls " << (*match)[1];
        }
    }
}

TEST(ProjectRulesTest, EveryHeaderHasAGuardThatNamesIt)
{
    for (SourceFile const& file :
         SourcesBelow({"platform", "vorlane", "tests", "examples", "benchmarks", "fuzz"})) {
        if (file.path.substr(file.path.size() - 2) != ".h") {
            continue;
        }
        std::string const stem = fs::path(file.path).stem().string();
        std::string guard;
        std::transform(stem.begin(), stem.end(), std::back_inserter(guard),
                       [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        EXPECT_TRUE(std::regex_search(file.text, std::regex("#ifndef VORLANE_[A-Z0-9_]*" + guard + "_H\n")))
            << file.path;
    }
}
