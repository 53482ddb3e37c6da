// The scanners of texts and streams: what they take and leave is put together again, and the streams are read
// beside a reader that goes byte by byte. The first byte of the input says how the stream gives out its
// bytes, the bytes up to the next zero byte are the delimiters, the rest is the text.

#include "tests/support/PiecewiseBuffer.h"
#include "vorlane/text/StringUtils.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <istream>
#include <sstream>
#include <string>

using Vorlane::StringUtils;

namespace {

void Require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

std::string Bytes(CString const& text)
{
    return std::string(text, static_cast<std::size_t>(text.GetLength()));
}

bool IsWhiteSpace(char character)
{
    return character != '\0' && std::strchr(" \t\n\v\f\r", character) != nullptr;
}

bool IsIn(std::string const& set, char character)
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

void CheckStream(std::string const& text, std::string const& delimiters, std::size_t step)
{
    std::string const set = delimiters.empty() ? " " : delimiters;
    char const single = set[0];
    VorlaneTest::PiecewiseBuffer buffer(text, step);
    std::istream stream(&buffer);
    std::string rest = text;
    for (std::size_t turn = 0; turn <= text.size(); ++turn) {
        bool atEnd = false;
        std::string expected;
        std::string item;
        switch (turn % 3) {
        case 0:
            expected = ReadSlowly(rest, IsWhiteSpace, true, atEnd);
            item = Bytes(StringUtils::ExtractString(stream));
            break;
        case 1:
            expected = ReadSlowly(
                rest, [&](char c) { return IsIn(set, c); }, false, atEnd);
            item = Bytes(StringUtils::ExtractString(stream, delimiters.c_str()));
            break;
        default:
            expected = ReadSlowly(
                rest, [&](char c) { return c == single; }, true, atEnd);
            item = Bytes(StringUtils::ExtractString(stream, single));
        }
        Require(item == expected);
        Require(stream.eof() == atEnd && stream.fail() == (atEnd && turn % 3 != 2));
        if (atEnd) {
            break;
        }
    }
}

/// Takes items until nothing is left; each call ends in less text, or says why not.
void CheckText(CString const& text, char const* delimiters)
{
    std::string const all = Bytes(text);
    CString rest(text);
    std::string put;
    while (!rest.IsEmpty()) {
        std::string const before = Bytes(rest);
        Require(Bytes(StringUtils::Peek(rest)) == Bytes(StringUtils::Parse(rest)));
        Require(static_cast<std::size_t>(rest.GetLength()) < before.size());
        Require(before.compare(before.size() - Bytes(rest).size(), std::string::npos, Bytes(rest)) == 0);
    }
    rest = text;
    while (!rest.IsEmpty()) {
        std::string const before = Bytes(rest);
        CString const copy(rest);
        std::string const field = Bytes(StringUtils::Parse(rest, delimiters));
        Require(before.find(field) != std::string::npos);
        Require(std::none_of(field.begin(), field.end(), [&](char c) { return IsIn(delimiters, c); }));
        Require(static_cast<std::size_t>(rest.GetLength()) < before.size());
        CString forNumber(copy);
        StringUtils::ParseRealNumber(forNumber, delimiters);
        Require(Bytes(forNumber) == Bytes(rest));
        CString forPoint(copy);
        double const x = StringUtils::PeekPoint(copy, delimiters).x;
        double const parsed = StringUtils::ParsePoint(forPoint, delimiters).x;
        Require(std::memcmp(&x, &parsed, sizeof x) == 0);
        Require(forPoint.GetLength() <= rest.GetLength());
        std::string const peeked = Bytes(StringUtils::Peek(copy, delimiters));
        Require(std::none_of(peeked.begin(), peeked.end(), [&](char c) { return IsIn(delimiters, c); }));
        StringUtils::PeekRealNumber(copy, delimiters);
    }
    rest = text;
    for (int left = -1; left != rest.GetLength();) {
        left = rest.GetLength();
        CString const copy = CString(rest).TrimLeft();
        Require(Bytes(StringUtils::PeekQuotedString(copy)) == Bytes(StringUtils::ParseQuotedString(rest)));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    if (size == 0 || size > 4096) {
        return 0;
    }
    constexpr std::size_t steps[] = {0, 1, 2, 7, 100000};
    std::string const input(reinterpret_cast<char const*>(data) + 1, size - 1);
    std::size_t const zero = std::min(input.find('\0'), input.size());
    std::string const delimiters = input.substr(0, zero);
    std::string const text = input.substr(std::min(zero + 1, input.size()));
    CheckText(CString(text.data(), static_cast<int>(text.size())), delimiters.c_str());
    CheckStream(text, delimiters, steps[data[0] % 5]);
    return 0;
}
