// The names that the shared libraries export, beside the list of those that they are meant to export.

#include "tests/support/CaseTable.h"
#include "tests/support/Files.h"

#include <regex>
#include <set>

using namespace VorlaneTest;

namespace {

/// The demangled symbols that a library defines for others, without arguments and results.
std::vector<std::string> ExportedSymbols(std::string const& library)
{
    Outcome const outcome = RunCommand(VORLANE_NM " --dynamic --defined-only '" + library + "' | c++filt -p");
    EXPECT_NE(outcome.out, "") << outcome.err;
    std::vector<std::string> symbols;
    for (std::string const& line : Split(outcome.out, '\n')) {
        // Address, kind, name: "0000000000001234 V typeinfo for Vorlane::Counter".
        symbols.push_back(std::regex_replace(line, std::regex("^[0-9a-f]* . (.* (for|to) )?"), ""));
    }
    return symbols;
}

/// Whether a symbol is a listed class or function, one of its members, or an instance of it.
bool BelongsTo(std::string const& symbol, std::string const& listed)
{
    bool const isOperator = listed.find("::operator") != std::string::npos;
    std::string const next = symbol.substr(std::min(listed.size(), symbol.size()), 1);
    return symbol.compare(0, listed.size(), listed) == 0 &&
           (next.empty() || next == ":" || next == "[" || (next == "<" && !isOperator));
}

/// Weak instances of the standard library's templates stand in every C++ library.
bool IsStandard(std::string const& symbol)
{
    return std::regex_search(symbol, std::regex("^(std::|__gnu_cxx::|operator)"));
}

} // namespace

TEST(ExportedSymbolsTest, AreThoseOfTheList)
{
    std::vector<Case> const list = ReadCases("rules/exported_names.txt", "exported");
    std::set<std::string> exported;
    for (char const* library : {VORLANE_CORE_LIBRARY, VORLANE_PLATFORM_LIBRARY}) {
        for (std::string const& symbol : ExportedSymbols(library)) {
            bool isListed = IsStandard(symbol);
            for (Case const& row : list) {
                if (BelongsTo(symbol, row.at("name"))) {
                    exported.insert(row.at("name"));
                    isListed = true;
                }
            }
            EXPECT_TRUE(isListed) << "exported, but not in the list: " << symbol;
        }
    }
    for (Case const& row : list) {
        EXPECT_EQ(exported.count(row.at("name")), 1u) << "in the list, but not exported: " << row.at("name");
    }
}

// A docstring stands directly before the declaration, or before the first of a group without a blank line.
TEST(ExportedSymbolsTest, AreDocumentedWhereTheyAreDeclared)
{
    for (Case const& row : ReadCases("rules/exported_names.txt", "exported")) {
        std::string const name = row.at("name").substr(row.at("name").rfind(':') + 1);
        std::string const quoted = std::regex_replace(name, std::regex("[+*]"), "\\$&");
        std::regex const declaration("\n *///.*\n(?! *//)(.+\n)*?(?! *//).*\\b" + quoted + "(?=[\n (;:])");
        EXPECT_TRUE(std::regex_search(ReadFile(VORLANE_SOURCE_DIR "/" + row.at("header")), declaration))
            << row.at("name") << " has no docstring in " << row.at("header");
    }
}
