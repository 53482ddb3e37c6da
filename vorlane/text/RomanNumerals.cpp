#include "vorlane/text/RomanNumerals.h"

#include "vorlane/coordination/CrossReference.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace RomanNumerals {

namespace {

struct Symbol
{
    std::string_view text;
    std::uint32_t value;
};

constexpr Symbol symbols[] = {
    {"M", 1000}, {"CM", 900}, {"D", 500}, {"CD", 400}, {"C", 100}, {"XC", 90}, {"L", 50},
    {"XL", 40},  {"X", 10},   {"IX", 9},  {"V", 5},    {"IV", 4},  {"I", 1},
};

/// The 32 bits as a signed number.
int ToSigned(std::uint32_t bits)
{
    return static_cast<int>(static_cast<std::int32_t>(bits));
}

bool Read(std::string_view text, int& value)
{
    value = 0;
    if (text == "0") {
        return true;
    }
    bool const negative = !text.empty() && text.front() == '-';
    text.remove_prefix(negative ? 1 : 0);
    std::uint32_t sum = 0;
    for (Symbol const& symbol : symbols) {
        while (text.substr(0, symbol.text.size()) == symbol.text) {
            sum += symbol.value;
            text.remove_prefix(symbol.text.size());
        }
    }
    if (!text.empty()) {
        return false;
    }
    value = ToSigned(negative ? 0 - sum : sum);
    return true;
}

std::string Write(int value)
{
    if (value == 0) {
        return "0";
    }
    std::string text(value < 0 ? "-" : "");
    int rest =
        ToSigned(value < 0 ? 0 - static_cast<std::uint32_t>(value) : static_cast<std::uint32_t>(value));
    // The lowest number is its own negative; there is nothing positive to write.
    for (Symbol const& symbol : symbols) {
        int const symbolValue = ToSigned(symbol.value);
        for (; rest >= symbolValue; rest -= symbolValue) {
            text += symbol.text;
        }
    }
    return text;
}

using Cache = Vorlane::CrossReference<int, CString>;

Cache& GetCache()
{
    static Cache cache;
    return cache;
}

} // namespace

bool RomanNumeralToInteger(std::string const& text, int& value)
{
    return Read(text, value);
}

bool RomanNumeralToInteger(CString const& text, int& value)
{
    return Read(static_cast<char const*>(text), value);
}

void IntegerToRomanNumeral(int value, std::string& text)
{
    text = AfxWithMemoryException([&] { return Write(value); });
}

void IntegerToRomanNumeral(int value, CString& text)
{
    Cache& cache = GetCache();
    if (cache.Lookup(value, text)) {
        return;
    }
    std::string const numeral = AfxWithMemoryException([&] { return Write(value); });
    CString const shared(numeral.data(), static_cast<int>(numeral.size()));
    cache.SetAt(value, shared);
    text = shared;
}

} // namespace RomanNumerals
