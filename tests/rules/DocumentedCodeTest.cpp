// Code and output shown in documents are those of programs that the tests build and run.
//
// A block of a document that follows a line <!-- file: PATH --> must be that file, one that follows
// <!-- part of: PATH --> must stand in it, and one that follows <!-- output: NAME --> must be what the
// example program of that name prints. C++ without such a line is not allowed.

#include "gtest/gtest.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

fs::path const root = VORLANE_SOURCE_DIR;

std::string ReadFile(fs::path const& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::string OutputOf(fs::path const& program)
{
    std::string output;
    std::FILE* const pipe = popen(program.c_str(), "r");
    if (pipe == nullptr) {
        return "cannot be run";
    }
    for (int c = std::getc(pipe); c != EOF; c = std::getc(pipe)) {
        output.push_back(static_cast<char>(c));
    }
    EXPECT_EQ(pclose(pipe), 0) << program;
    return output;
}

std::string Unindented(std::string const& text)
{
    return std::regex_replace(text, std::regex("\n +"), "\n");
}

std::vector<fs::path> Documents()
{
    std::vector<fs::path> documents;
    for (fs::path const& folder : {root, root / "docs"}) {
        for (fs::directory_entry const& entry : fs::directory_iterator(folder)) {
            if (entry.path().extension() == ".md") {
                documents.push_back(entry.path());
            }
        }
    }
    return documents;
}

} // namespace

TEST(DocumentedCodeTest, BlocksAreTheFilesAndOutputsThatTheyName)
{
    std::regex const block("<!-- (file|part of|output): ([^ ]+) -->\n+```[a-z]*\n([^`]*)```");
    int blocks = 0;
    for (fs::path const& document : Documents()) {
        std::string const text = ReadFile(document);
        EXPECT_FALSE(std::regex_search(text, std::regex("[^>\n]\n+```cpp")))
            << document << " shows code of no file";
        for (std::sregex_iterator match(text.begin(), text.end(), block), end; match != end;
             ++match, ++blocks) {
            std::string const kind = (*match)[1];
            std::string const name = (*match)[2];
            if (kind == "part of") {
                std::string const part = Unindented("\n" + (*match).str(3));
                EXPECT_NE(Unindented(ReadFile(root / name)).find(part), std::string::npos)
                    << document << " shows no part of " << name;
                continue;
            }
            std::string const expected =
                kind == "file" ? ReadFile(root / name) : OutputOf(fs::path(VORLANE_EXAMPLES_DIR) / name);
            EXPECT_EQ((*match)[3], expected) << document << " shows " << kind << " " << name;
        }
    }
    EXPECT_GT(blocks, 0);
}

TEST(DocumentedCodeTest, LinksLeadSomewhere)
{
    std::regex const link("\\]\\(([^):#]+)(#[^)]*)?\\)");
    int links = 0;
    for (fs::path const& document : Documents()) {
        std::string const text = ReadFile(document);
        for (std::sregex_iterator match(text.begin(), text.end(), link), end; match != end;
             ++match, ++links) {
            EXPECT_TRUE(fs::exists(document.parent_path() / std::string((*match)[1])))
                << document << " links to " << (*match)[1];
        }
    }
    EXPECT_GT(links, 0);
}
