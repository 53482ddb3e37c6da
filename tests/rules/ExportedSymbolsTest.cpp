// The names that the shared libraries export, beside the list of those that they are meant to export.

#include "gtest/gtest.h"

#include <cstdio>
#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace {

/// The demangled symbols that a library defines for others.
std::vector<std::string> ExportedSymbols(std::string const& library)
{
    std::string const command = VORLANE_NM " --dynamic --defined-only --demangle " + library;
    std::vector<std::string> symbols;
    std::FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        ADD_FAILURE() << "cannot run " << command;
        return symbols;
    }
    std::string line;
    for (int c = std::getc(pipe); c != EOF; c = std::getc(pipe)) {
        if (c != '\n') {
            line.push_back(static_cast<char>(c));
            continue;
        }
        // Address, kind, name: "0000000000001234 T Vorlane::Counter::Zero()".
        std::size_t const kind = line.find(' ');
        if (kind != std::string::npos && line.size() > kind + 3) {
            symbols.push_back(line.substr(kind + 3));
        }
        line.clear();
    }
    EXPECT_EQ(pclose(pipe), 0) << command;
    EXPECT_FALSE(symbols.empty()) << command;
    return symbols;
}

bool EndsIn(std::string const& name, std::string const& ending)
{
    return name.size() >= ending.size() &&
           name.compare(name.size() - ending.size(), ending.size(), ending) == 0;
}

/// The class or function that a symbol belongs to, with its namespaces and members but without arguments, the
/// arguments of templates, and a result type in front.
std::string NameOf(std::string symbol)
{
    for (char const* prefix : {"vtable for ", "typeinfo for ", "typeinfo name for ", "guard variable for ",
                               "virtual thunk to ", "non-virtual thunk to "}) {
        if (symbol.rfind(prefix, 0) == 0) {
            symbol.erase(0, std::string(prefix).size());
        }
    }
    std::string name;
    int depth = 0;
    for (char const c : symbol) {
        bool const inOperator = EndsIn(name, "operator") || EndsIn(name, "operator<");
        if (c == '<' && !inOperator) {
            ++depth;
        } else if (c == '>' && depth > 0) {
            --depth;
        } else if (depth == 0) {
            if (c == '(' || c == '[') {
                break;
            }
            if (c == ' ' && !inOperator) {
                name.clear(); // what stood before was a result type
                continue;
            }
            name.push_back(c);
        }
    }
    return name;
}

bool BelongsTo(std::string const& name, std::string const& listed)
{
    return name.compare(0, listed.size(), listed) == 0 &&
           (name.size() == listed.size() || name.compare(listed.size(), 2, "::") == 0);
}

/// Weak instances of the standard library's templates stand in every C++ library.
bool IsStandard(std::string const& name)
{
    return BelongsTo(name, "std") || BelongsTo(name, "__gnu_cxx") || name.rfind("operator", 0) == 0;
}

} // namespace

TEST(ExportedSymbolsTest, AreThoseOfTheList)
{
    std::ifstream list(VORLANE_SOURCE_DIR "/tests/rules/exported_names.txt");
    std::set<std::string> expected;
    for (std::string line; std::getline(list, line);) {
        if (!line.empty() && line.front() != '#') {
            expected.insert(line);
        }
    }
    ASSERT_FALSE(expected.empty());

    std::set<std::string> exported;
    for (char const* library : {VORLANE_CORE_LIBRARY, VORLANE_PLATFORM_LIBRARY}) {
        for (std::string const& symbol : ExportedSymbols(library)) {
            std::string const name = NameOf(symbol);
            bool listed = IsStandard(name);
            for (std::string const& candidate : expected) {
                if (BelongsTo(name, candidate)) {
                    exported.insert(candidate);
                    listed = true;
                }
            }
            EXPECT_TRUE(listed) << "exported, but not in the list: " << symbol << " (" << name << ")";
        }
    }
    for (std::string const& name : expected) {
        EXPECT_TRUE(exported.count(name) != 0) << "in the list, but not exported: " << name;
    }
}
