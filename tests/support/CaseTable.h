#ifndef VORLANE_TESTS_SUPPORT_CASETABLE_H
#define VORLANE_TESTS_SUPPORT_CASETABLE_H

/// \file
/// Tables of cases in text files. A file holds several; a line in brackets begins each and names its columns:
///
///     # Comments begin like this one.
///     [word counts] text count
///     "two words" 2
///     "a tab\tand a byte \xE9" 5
///
/// A field is a word, or a text in double quotes with the escapes \\ \" \t \n \v \f \r \0 \xHH, and with
/// \{N}c for N characters c.

#include "gtest/gtest.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace VorlaneTest {

/// The fields of a line by the names of their columns, and "where" the line stands.
using Case = std::map<std::string, std::string>;

inline double NumberIn(Case const& row, char const* column)
{
    return std::stod(row.at(column));
}

/// The pieces of a text between separators; none of the empty text.
inline std::vector<std::string> Split(std::string const& text, char separator)
{
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

/// What an escape stands for; `at` moves from the backslash to its last character.
inline std::string Unescaped(std::string const& line, std::size_t& at)
{
    char const letter = line.at(++at);
    if (letter == 'x') {
        at += 2;
        return std::string(1, static_cast<char>(std::stoi(line.substr(at - 1, 2), nullptr, 16)));
    }
    if (letter == '{') {
        std::size_t const count = std::stoul(line.substr(at + 1));
        at = line.find('}', at) + 1;
        return std::string(count, line.at(at));
    }
    return std::string(1, std::string("\t\n\v\f\r\0\\\"", 8).at(std::string("tnvfr0\\\"").find(letter)));
}

inline std::vector<std::string> FieldsOf(std::string const& line)
{
    std::vector<std::string> fields;
    for (std::size_t at = line.find_first_not_of(' '); at < line.size();
         at = line.find_first_not_of(' ', at)) {
        bool const isQuoted = line[at] == '"';
        fields.emplace_back();
        for (at += isQuoted; at < line.size() && line[at] != (isQuoted ? '"' : ' '); ++at) {
            fields.back() += isQuoted && line[at] == '\\' ? Unescaped(line, at) : std::string(1, line[at]);
        }
        at += isQuoted;
    }
    return fields;
}

/// The cases of one table of a file, which is named from the folder of the tests. A file, table or field that
/// is missing is a failure.
inline std::vector<Case> ReadCases(std::string const& file, std::string const& table)
{
    std::ifstream stream(VORLANE_SOURCE_DIR "/tests/" + file);
    std::vector<Case> cases;
    std::vector<std::string> columns;
    int number = 1;
    for (std::string line; std::getline(stream, line); ++number) {
        if (line.rfind('[', 0) == 0) {
            std::size_t const close = line.find(']');
            EXPECT_TRUE(std::isalpha(line.at(1)) != 0 && line.find("] ") == close)
                << file << ":" << number << ": a case that begins with a bracket has to be quoted";
            columns = FieldsOf(line.substr(1, close - 1) == table ? line.substr(close + 1) : "");
        } else if (!columns.empty() && !line.empty() && line[0] != '#') {
            std::vector<std::string> const fields = FieldsOf(line);
            cases.push_back({{"where", file + ":" + std::to_string(number)}});
            EXPECT_EQ(fields.size(), columns.size()) << cases.back()["where"];
            for (std::size_t i = 0; i < std::min(fields.size(), columns.size()); ++i) {
                cases.back()[columns[i]] = fields[i];
            }
        }
    }
    EXPECT_FALSE(cases.empty()) << "there is no [" << table << "] in " << file;
    return cases;
}

} // namespace VorlaneTest

#endif
