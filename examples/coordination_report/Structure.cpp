#include "examples/coordination_report/Structure.h"

#include "examples/coordination_report/Elements.h"

#include "vorlane/text/StringUtils.h"

#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace CoordinationReport {
namespace {

using Vorlane::StringUtils;

CString TextOf(std::string const& line)
{
    return CString(line.data(), static_cast<int>(line.size()));
}

std::string BytesOf(CString const& text)
{
    return std::string(static_cast<char const*>(text), static_cast<std::size_t>(text.GetLength()));
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

/// A conversion ends at a zero byte, so a word with one is none that it has read whole.
bool ReadCount(CString const& word, int& count)
{
    return std::strlen(word) == static_cast<std::size_t>(word.GetLength()) &&
           StringUtils::StringToInteger(word, count) && count > 0;
}

/// A decimal number. One too small for a normal double is the nearest that there is.
bool ReadCoordinate(CString const& word, double& value)
{
    if (BytesOf(word).find_first_not_of("0123456789+-.eE") != std::string::npos) {
        return false; // names of numbers, and hexadecimal ones
    }
    if (!StringUtils::StringToReal(word, value)) {
        if (errno != ERANGE) {
            return false;
        }
        value = StringUtils::PeekRealNumber(word, nullptr);
    }
    return std::isfinite(value);
}

Atom ReadAtom(std::string const& path, std::size_t lineNumber, CString line)
{
    std::string const symbol = BytesOf(StringUtils::Parse(line));
    Element const* const element = FindElement(symbol);
    if (element == nullptr) {
        throw BadFile(path, lineNumber, Quoted(symbol) + " is no element");
    }
    Atom atom{element->symbol, {}};
    double* const coordinates[] = {&atom.position.x, &atom.position.y, &atom.position.z};
    char const* const names[] = {"x", "y", "z"};
    for (int k = 0; k < 3; ++k) {
        CString const word = StringUtils::Parse(line);
        if (word.IsEmpty()) {
            throw BadFile(path, lineNumber, std::string("the coordinate ") + names[k] + " is missing");
        }
        if (!ReadCoordinate(word, *coordinates[k])) {
            throw BadFile(path, lineNumber,
                          std::string("the coordinate ") + names[k] +
                              " is no number: " + Quoted(BytesOf(word)));
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
    CString rest = TextOf(line);
    CString const countWord = StringUtils::Parse(rest);
    int count = 0;
    if (!ReadCount(countWord, count) || !StringUtils::Peek(rest).IsEmpty()) {
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
        CString const words = TextOf(line);
        bool const blank = StringUtils::Peek(words).IsEmpty();
        if (static_cast<int>(structure.atoms.size()) < count) {
            if (blank) {
                throw BadFile(path, lineNumber,
                              promised + ", but after " + std::to_string(structure.atoms.size()) +
                                  " comes a blank line");
            }
            structure.atoms.push_back(ReadAtom(path, lineNumber, words));
        } else if (!blank) {
            throw BadFile(path, lineNumber, promised + ", but there are more lines");
        }
    }
    if (stream.bad()) {
        throw BadFile(path, lineNumber, "cannot be read any further");
    }
    if (static_cast<int>(structure.atoms.size()) < count) {
        throw BadFile(path, lineNumber + 1,
                      promised + ", but the file ends after " + std::to_string(structure.atoms.size()));
    }
    return structure;
}

} // namespace CoordinationReport
