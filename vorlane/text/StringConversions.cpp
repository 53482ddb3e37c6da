#include "vorlane/text/StringUtils.h"

#include "vorlane/foundation/FloatRounding.h"
#include "vorlane/text/NumberScanningInternal.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace Vorlane {

namespace {

struct Keyword
{
    char const* text;
    bool value;
};

constexpr Keyword keywords[] = {
    {"on", true}, {"t", true},      {"true", true}, {"y", true},   {"yes", true},
    {"f", false}, {"false", false}, {"n", false},   {"no", false}, {"off", false},
};

bool IsNullOrEmpty(char const* text)
{
    return text == nullptr || *text == '\0';
}

/// The first words of the text as numbers. It fails without converting anything if there are too few words.
template <std::size_t count>
bool ConvertWords(char const* text, std::array<double, count>& values)
{
    struct Word
    {
        char const* first;
        char const* last;
    };
    if (text == nullptr) {
        return false;
    }
    char const* const last = text + std::strlen(text);
    std::array<Word, count> words{};
    char const* position = text;
    for (Word& word : words) {
        word.first = NumberScanning::SkipWhiteSpace(position, last);
        word.last = NumberScanning::FindWhiteSpace(word.first, last);
        position = word.last;
    }
    // Words are missing at the end only.
    if (words.back().first == last) {
        return false;
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (!NumberScanning::ConvertReal(words[i].first, words[i].last, values[i])) {
            return false;
        }
    }
    return true;
}

/// Rewrites a text that does not grow. `edit` gets the characters and their end, and gives their new end.
template <typename Edit>
void EditInPlace(CString& text, Edit edit)
{
    int const length = text.GetLength();
    char* const buffer = text.GetBuffer(length);
    text.ReleaseBuffer(static_cast<int>(edit(buffer, buffer + length) - buffer));
}

} // namespace

bool StringUtils::StringToBoolean(char const* text, bool& value)
{
    CString const word(text);
    for (Keyword const& keyword : keywords) {
        if (word.CompareNoCase(keyword.text) == 0) {
            value = keyword.value;
            return true;
        }
    }
    return false;
}

bool StringUtils::StringToInteger(char const* text, long& value)
{
    if (IsNullOrEmpty(text)) {
        return false;
    }
    char const* const last = text + std::strlen(text);
    NumberScanning::ScannedInteger const number = NumberScanning::ScanInteger(text, last);
    errno = number.outOfRange ? ERANGE : 0;
    if (number.outOfRange || number.end != last) {
        return false;
    }
    value = number.value;
    return true;
}

bool StringUtils::StringToInteger(char const* text, int& value)
{
    long number = 0;
    if (!StringToInteger(text, number)) {
        return false;
    }
    value = static_cast<int>(number);
    return true;
}

bool StringUtils::StringToInteger(char const* text, short& value)
{
    long number = 0;
    if (!StringToInteger(text, number)) {
        return false;
    }
    value = static_cast<short>(static_cast<std::uint16_t>(number));
    return true;
}

bool StringUtils::StringToReal(char const* text, double& value)
{
    return text != nullptr && NumberScanning::ConvertReal(text, text + std::strlen(text), value);
}

bool StringUtils::StringToReal(char const* text, float& value)
{
    double number = 0.0;
    if (!StringToReal(text, number)) {
        return false;
    }
    value = RoundedToFloat(number);
    return true;
}

bool StringUtils::StringToPoint(char const* text, Spatia::Point3d& point)
{
    std::array<double, 3> values{};
    if (!ConvertWords(text, values)) {
        return false;
    }
    point = Spatia::Point3d(values[0], values[1], values[2]);
    return true;
}

bool StringUtils::StringToPoint(char const* text, Spatia::Point2d& point)
{
    std::array<double, 2> values{};
    if (!ConvertWords(text, values)) {
        return false;
    }
    point = Spatia::Point2d(values[0], values[1]);
    return true;
}

CString StringUtils::QuoteString(CString const& text, char quote)
{
    CString result = quote + text;
    result += quote;
    return result;
}

void StringUtils::CleanString(CString& text)
{
    EditInPlace(text, [](char* first, char const* last) {
        char* end = first;
        bool blank = false; // white space was met since the last character that stays
        for (char const* position = first; position != last; ++position) {
            if (AfxIsWhiteSpace(*position)) {
                blank = end != first;
                continue;
            }
            if (blank) {
                *end++ = ' ';
                blank = false;
            }
            *end++ = *position;
        }
        return end;
    });
}

void StringUtils::RemoveSpaces(CString& text)
{
    EditInPlace(text, [](char* first, char const* last) {
        char* end = first;
        bool inDoubleQuotes = false;
        bool inSingleQuotes = false;
        for (char const* position = first; position != last; ++position) {
            inDoubleQuotes = inDoubleQuotes != (*position == '"');
            inSingleQuotes = inSingleQuotes != (*position == '\'');
            if (inDoubleQuotes || inSingleQuotes || !AfxIsWhiteSpace(*position)) {
                *end++ = *position;
            }
        }
        return end;
    });
}

void StringUtils::RemoveDuplicateStrings(CStringArray& strings)
{
    CStringArray kept;
    AfxWithMemoryException([&] {
        std::unordered_set<std::string_view> seen;
        std::vector<int> firsts;
        for (int i = 0; i < strings.GetSize(); ++i) {
            // A view of the text as Compare sees it.
            if (seen.emplace(static_cast<char const*>(strings.GetAt(i))).second) {
                firsts.push_back(i);
            }
        }
        kept.SetSize(static_cast<int>(firsts.size()), -1);
        for (std::size_t i = 0; i < firsts.size(); ++i) {
            kept.SetAtGrow(static_cast<int>(i), strings.GetAt(firsts[i]));
        }
    });
    strings.Copy(kept);
}

} // namespace Vorlane
