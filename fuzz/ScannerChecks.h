#ifndef VORLANE_FUZZ_SCANNERCHECKS_H
#define VORLANE_FUZZ_SCANNERCHECKS_H

/// \file
/// The scanners of texts and streams: what they take and leave is put together again, and the streams are
/// read beside a reader that goes byte by byte.

#include "fuzz/PiecewiseBuffer.h"
#include "fuzz/Require.h"
#include "vorlane/text/StringUtils.h"

#include <algorithm>
#include <cstring>
#include <istream>
#include <string>

namespace VorlaneFuzz {

inline std::string Bytes(CString const& text)
{
    return std::string(text, static_cast<std::size_t>(text.GetLength()));
}

inline bool IsWhiteSpace(char character)
{
    return character != '\0' && std::strchr(" \t\n\v\f\r", character) != nullptr;
}

inline bool IsIn(std::string const& set, char character)
{
    return set.find(character) != std::string::npos;
}

/// What a reader of bytes gets from the front of `rest`, which it shortens.
template <typename Ends>
std::string ReadSlowly(std::string& rest, Ends ends, bool takesEnd, bool& atEnd)
{
    rest.erase(
        0, static_cast<std::size_t>(std::find_if_not(rest.begin(), rest.end(), IsWhiteSpace) - rest.begin()));
    auto const end = std::find_if(rest.begin(), rest.end(), ends);
    atEnd = end == rest.end();
    std::string item(rest.begin(), end);
    rest.erase(rest.begin(), end + (takesEnd && !atEnd ? 1 : 0));
    return item;
}

/// Reads items of the three forms in turn, and compares them and the bits with a reader that goes byte by
/// byte. The stream gives out its bytes in pieces of `step`.
inline void CheckStream(std::string const& text, std::string const& delimiters, std::size_t step)
{
    std::string const set = delimiters.empty() ? " " : delimiters;
    char const single = set[0];
    PiecewiseBuffer buffer(text, step);
    std::istream stream(&buffer);
    std::string rest = text;
    for (std::size_t turn = 0; turn <= text.size(); ++turn) {
        bool atEnd = false;
        std::string expected;
        std::string item;
        switch (turn % 3) {
        case 0:
            expected = ReadSlowly(rest, IsWhiteSpace, true, atEnd);
            item = Bytes(Vorlane::StringUtils::ExtractString(stream));
            break;
        case 1:
            expected = ReadSlowly(
                rest, [&](char c) { return c == '\0' || IsIn(set, c); }, false, atEnd);
            item = Bytes(Vorlane::StringUtils::ExtractString(stream, delimiters.c_str()));
            break;
        default:
            expected = ReadSlowly(
                rest, [&](char c) { return c == single; }, true, atEnd);
            item = Bytes(Vorlane::StringUtils::ExtractString(stream, single));
        }
        Require(item == expected);
        Require(stream.eof() == atEnd && stream.fail() == (atEnd && turn % 3 != 2));
        if (atEnd) {
            Require(Bytes(Vorlane::StringUtils::ExtractLine(stream)).empty() && stream.fail());
            break;
        }
    }
}

inline bool AreSame(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

inline bool AreSame(Spatia::Point3d const& a, Spatia::Point3d const& b)
{
    return AreSame(a.x, b.x) && AreSame(a.y, b.y) && AreSame(a.z, b.z);
}

/// Numbers and points: a single delimiter is a set of one, and a point is seen as it is taken.
inline void CheckSingleDelimiter(CString const& text, char delimiter)
{
    using Utils = Vorlane::StringUtils;
    char const set[] = {delimiter, '\0'};
    CString rest(text), restOfSet(text);
    Require(AreSame(Utils::PeekRealNumber(text, delimiter), Utils::PeekRealNumber(text, set)));
    Require(AreSame(Utils::ParseRealNumber(rest, delimiter), Utils::ParseRealNumber(restOfSet, set)));
    Require(Bytes(rest) == Bytes(restOfSet));
    rest = restOfSet = text;
    Spatia::Point3d const point = Utils::ParsePoint(rest, delimiter);
    Require(AreSame(point, Utils::ParsePoint(restOfSet, set)));
    Require(AreSame(point, Utils::PeekPoint(text, delimiter)));
    Require(AreSame(point, Utils::PeekPoint(text, set)));
    Require(Bytes(rest) == Bytes(restOfSet));
}

/// Takes items until nothing is left; each call ends in less text, or says why not.
inline void CheckText(CString const& text, char const* delimiters)
{
    std::string const all = Bytes(text);
    CString rest(text);
    while (!rest.IsEmpty()) {
        std::string const before = Bytes(rest);
        std::string const peeked = Bytes(Vorlane::StringUtils::Peek(rest));
        Require(peeked == Bytes(Vorlane::StringUtils::Parse(rest)));
        Require(static_cast<std::size_t>(rest.GetLength()) < before.size());
        Require(before.compare(before.size() - Bytes(rest).size(), std::string::npos, Bytes(rest)) == 0);
    }
    rest = text;
    while (!rest.IsEmpty()) {
        std::string const before = Bytes(rest);
        CString const copy(rest);
        std::string const field = Bytes(Vorlane::StringUtils::Parse(rest, delimiters));
        Require(before.find(field) != std::string::npos);
        Require(std::none_of(field.begin(), field.end(), [&](char c) { return IsIn(delimiters, c); }));
        Require(static_cast<std::size_t>(rest.GetLength()) < before.size());
        CString forNumber(copy);
        Vorlane::StringUtils::ParseRealNumber(forNumber, delimiters);
        Require(Bytes(forNumber) == Bytes(rest));
        CString forPoint(copy);
        Require(AreSame(Vorlane::StringUtils::PeekPoint(copy, delimiters),
                        Vorlane::StringUtils::ParsePoint(forPoint, delimiters)));
        if (*delimiters != '\0') {
            CheckSingleDelimiter(copy, *delimiters);
        }
        Require(forPoint.GetLength() <= rest.GetLength());
        CString own(copy), set(copy);
        CString const ownField = Vorlane::StringUtils::Parse(own, own);
        Require(Bytes(ownField) == Bytes(Vorlane::StringUtils::Parse(set, copy)) && Bytes(own) == Bytes(set));
        std::string const peeked = Bytes(Vorlane::StringUtils::Peek(copy, delimiters));
        Require(std::none_of(peeked.begin(), peeked.end(), [&](char c) { return IsIn(delimiters, c); }));
        Vorlane::StringUtils::PeekRealNumber(copy, delimiters);
    }
    rest = text;
    for (int left = -1; left != rest.GetLength();) {
        left = rest.GetLength();
        std::string const peeked = Bytes(Vorlane::StringUtils::PeekQuotedString(CString(rest).TrimLeft()));
        Require(peeked == Bytes(Vorlane::StringUtils::ParseQuotedString(rest)));
    }
}

} // namespace VorlaneFuzz

#endif
