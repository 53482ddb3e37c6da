#include "examples/coordination_report/Structure.h"

#include "examples/coordination_report/Elements.h"

#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace CoordinationReport {
namespace {

/// Takes the first word off a line; empty if there is none.
std::string TakeWord(std::string& line)
{
    char const* const blanks = " \t\r\v\f";
    std::size_t const begin = line.find_first_not_of(blanks);
    if (begin == std::string::npos) {
        line.clear();
        return {};
    }
    std::size_t const end = std::min(line.find_first_of(blanks, begin), line.size());
    std::string const word = line.substr(begin, end - begin);
    line.erase(0, end);
    return word;
}

/// A word as it may stand in a message: short, and without bytes that upset a terminal.
std::string Quoted(std::string const& word)
{
    std::string shown;
    for (char const c : word.substr(0, 40)) {
        shown += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? '?' : c;
    }
    return "'" + shown + (word.size() > 40 ? "...'" : "'");
}

bool ReadCount(std::string const& word, long long& count)
{
    auto const result = std::from_chars(word.data(), word.data() + word.size(), count);
    return result.ec == std::errc() && result.ptr == word.data() + word.size() && count > 0;
}

bool ReadCoordinate(std::string const& word, double& value)
{
    char const* begin = word.data();
    char const* const end = begin + word.size();
    if (word.size() > 1 && word[0] == '+' && word[1] != '-') {
        ++begin;
    }
    auto const result = std::from_chars(begin, end, value);
    return result.ec == std::errc() && result.ptr == end && std::isfinite(value);
}

Atom ReadAtom(std::string const& path, std::size_t lineNumber, std::string line)
{
    std::string const symbol = TakeWord(line);
    Element const* const element = FindElement(symbol);
    if (element == nullptr) {
        throw BadFile(path, lineNumber, Quoted(symbol) + " is no element");
    }
    Atom atom{element->symbol, {}};
    double* const coordinates[] = {&atom.position.x, &atom.position.y, &atom.position.z};
    char const* const names[] = {"x", "y", "z"};
    for (int k = 0; k < 3; ++k) {
        std::string const word = TakeWord(line);
        if (word.empty()) {
            throw BadFile(path, lineNumber, std::string("the coordinate ") + names[k] + " is missing");
        }
        if (!ReadCoordinate(word, *coordinates[k])) {
            throw BadFile(path, lineNumber,
                          std::string("the coordinate ") + names[k] + " is no number: " + Quoted(word));
        }
    }
    return atom;
}

} // namespace

std::string Structure::FileName() const
{
    return std::filesystem::path(path).filename().string();
}

std::string Structure::NameOf(std::size_t atom) const
{
    return atoms[atom].element + std::to_string(atom + 1);
}

BadFile::BadFile(std::string const& path, std::size_t line, std::string const& reason)
    : std::runtime_error(path + (line > 0 ? ":" + std::to_string(line) : "") + ": " + reason)
{}

Structure ReadXyz(std::string const& path)
{
    std::error_code failure;
    if (std::filesystem::is_directory(path, failure)) {
        throw BadFile(path, 0, "is a folder");
    }
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        throw BadFile(path, 0, std::filesystem::exists(path, failure) ? "cannot be opened" : "no such file");
    }
    Structure structure;
    structure.path = path;
    std::string line;
    if (!std::getline(stream, line)) {
        throw BadFile(path, 0, "the file is empty");
    }
    std::string rest = line;
    std::string const countWord = TakeWord(rest);
    long long count = 0;
    if (!ReadCount(countWord, count) || !TakeWord(rest).empty()) {
        throw BadFile(path, 1,
                      "the number of atoms is wanted here, not " + Quoted(line.substr(0, line.find('\r'))));
    }
    std::getline(stream, structure.comment);
    if (!structure.comment.empty() && structure.comment.back() == '\r') {
        structure.comment.pop_back();
    }
    std::size_t lineNumber = 2;
    std::string const promised =
        "line 1 promises " + std::to_string(count) + (count == 1 ? " atom" : " atoms");
    while (std::getline(stream, line)) {
        ++lineNumber;
        std::string words = line;
        bool const blank = TakeWord(words).empty();
        if (static_cast<long long>(structure.atoms.size()) < count) {
            if (blank) {
                throw BadFile(path, lineNumber,
                              promised + ", but after " + std::to_string(structure.atoms.size()) +
                                  " comes a blank line");
            }
            structure.atoms.push_back(ReadAtom(path, lineNumber, line));
        } else if (!blank) {
            throw BadFile(path, lineNumber, promised + ", but there are more lines");
        }
    }
    if (stream.bad()) {
        throw BadFile(path, lineNumber, "cannot be read any further");
    }
    if (static_cast<long long>(structure.atoms.size()) < count) {
        throw BadFile(path, lineNumber + 1,
                      promised + ", but the file ends after " + std::to_string(structure.atoms.size()));
    }
    return structure;
}

} // namespace CoordinationReport
