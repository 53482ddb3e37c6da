#include "vorlane/text/NumberScanningInternal.h"

#include "vorlane/text/DecimalRoundingInternal.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>

namespace Vorlane::NumberScanning {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double smallestNormal = std::numeric_limits<double>::min();

/// Exponents are cut here, far beyond every length of text that can shift them back into range.
constexpr std::int64_t exponentLimit = std::int64_t{1} << 60;

/// The powers of ten that a double holds exactly.
constexpr std::array<double, 23> exactPowersOfTen = {
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22,
};

constexpr char LowerCase(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A')) : character;
}

constexpr unsigned int DigitValue(char character)
{
    return static_cast<unsigned int>(character - '0');
}

/// 16 for a character that is no hexadecimal digit.
constexpr unsigned int HexadecimalValue(char character)
{
    if (IsDigit(character)) {
        return DigitValue(character);
    }
    char const lower = LowerCase(character);
    return lower >= 'a' && lower <= 'f' ? static_cast<unsigned int>(lower - 'a') + 10 : 16;
}

/// Whether the text begins with `word`, which is in lower case.
bool BeginsWith(char const* first, char const* last, std::string_view word)
{
    return static_cast<std::size_t>(last - first) >= word.size() &&
           std::equal(word.begin(), word.end(), first, [](char a, char b) { return a == LowerCase(b); });
}

struct Exponent
{
    std::int64_t value;
    char const* end;
};

/// The exponent behind `marker`, a letter in lower case; without digits behind the marker it is no exponent,
/// and the number ends in front of it.
Exponent ScanExponent(char const* first, char const* last, char marker)
{
    if (first == last || LowerCase(*first) != marker) {
        return {0, first};
    }
    char const* position = first + 1;
    bool const negative = position != last && *position == '-';
    if (position != last && (*position == '-' || *position == '+')) {
        ++position;
    }
    if (position == last || !IsDigit(*position)) {
        return {0, first};
    }
    std::int64_t value = 0;
    for (; position != last && IsDigit(*position); ++position) {
        if (value < exponentLimit / 16) {
            value = value * 10 + DigitValue(*position);
        }
    }
    return {negative ? -value : value, position};
}

/// The digits of a positive decimal number: 0.DIGITS times ten to the power of `exponent`; neither the first
/// nor the last digit is 0.
struct Decimal
{
    /// Every double, and every number half way between two of them, has at most 768 digits; of what follows
    /// them it matters only whether it is zero.
    static constexpr std::size_t capacity = 800;

    std::array<char, capacity> digits;
    std::size_t count = 0;
    std::int64_t exponent = 0;

    std::string_view Digits() const { return {digits.data(), count}; }
};

/// The number that the digits from `first` to `last`, with at most one point among them, and a further
/// exponent stand for. One of the digits is not 0.
Decimal CollectDigits(char const* first, char const* last, std::int64_t exponent)
{
    Decimal decimal;
    bool fraction = false;
    bool rest = false;
    for (; first != last; ++first) {
        if (*first == '.') {
            fraction = true;
            continue;
        }
        bool const leadingZero = decimal.count == 0 && *first == '0';
        exponent += (fraction ? 0 : 1) - (leadingZero ? 1 : 0);
        if (leadingZero) {
            continue;
        }
        if (decimal.count + 1 < Decimal::capacity) {
            decimal.digits[decimal.count++] = *first;
        } else {
            rest = rest || *first != '0';
        }
    }
    if (rest) {
        decimal.digits[decimal.count++] = '1';
    }
    while (decimal.digits[decimal.count - 1] == '0') {
        --decimal.count;
    }
    decimal.exponent = exponent;
    return decimal;
}

/// The exact digits of mantissa / 2^scale, for a mantissa above 0 and a scale of at most 1076, by way of
/// mantissa * 5^scale / 10^scale.
Decimal ExpandBinary(std::uint64_t mantissa, int scale)
{
    constexpr std::uint32_t limbBase = 1000000000;
    constexpr int limbDigits = 9;
    std::array<std::uint32_t, 88> limbs{}; // the lowest first
    std::size_t used = 0;
    for (; mantissa != 0; mantissa /= limbBase) {
        limbs[used++] = static_cast<std::uint32_t>(mantissa % limbBase);
    }
    for (int left = scale; left > 0; --left) {
        std::uint64_t factor = 5;
        for (int power = 1; power < 13 && left > 1; ++power, --left) {
            factor *= 5;
        }
        std::uint64_t carry = 0;
        for (std::size_t i = 0; i < used; ++i) {
            carry += limbs[i] * factor;
            limbs[i] = static_cast<std::uint32_t>(carry % limbBase);
            carry /= limbBase;
        }
        for (; carry != 0; carry /= limbBase) {
            limbs[used++] = static_cast<std::uint32_t>(carry % limbBase);
        }
    }
    std::array<char, limbs.size() * limbDigits> text;
    for (std::size_t i = 0; i < used; ++i) {
        std::uint32_t limb = limbs[used - 1 - i];
        for (std::size_t digit = limbDigits; digit-- > 0; limb /= 10) {
            text[i * limbDigits + digit] = static_cast<char>('0' + limb % 10);
        }
    }
    return CollectDigits(text.data(), text.data() + used * limbDigits, -scale);
}

/// Whether a is less than b.
bool IsLess(Decimal const& a, Decimal const& b)
{
    // Where one text of digits begins with the other, the longer number is the greater.
    return a.exponent != b.exponent ? a.exponent < b.exponent : a.Digits() < b.Digits();
}

bool IsEqual(Decimal const& a, Decimal const& b)
{
    return a.exponent == b.exponent && a.Digits() == b.Digits();
}

/// Whether a number that was rounded to `value`, which is not above the smallest normal double, counts as out
/// of range: it does when it is no double and would, with its 53 bits and no lower bound of the exponent,
/// still round to below the smallest normal double.
bool IsBelowRange(Decimal const& decimal, double value)
{
    if (value == 0.0) {
        return true;
    }
    if (value == smallestNormal) {
        // 2^-1022 less half a unit of its 54th bit
        return IsLess(decimal, ExpandBinary((std::uint64_t{1} << 54) - 1, 1076));
    }
    return !IsEqual(decimal, ExpandBinary(static_cast<std::uint64_t>(std::ldexp(value, 1074)), 1074));
}

/// The decimal as a text for from_chars: a point, digits, an exponent.
double RoundDecimal(Decimal const& decimal)
{
    // Beyond these bounds everything is infinite or zero.
    if (decimal.exponent > 400) {
        return infinity;
    }
    if (decimal.exponent < -400) {
        return 0.0;
    }
    std::array<char, Decimal::capacity + 16> text;
    text[0] = '.';
    char* end = std::copy_n(decimal.digits.data(), decimal.count, text.data() + 1);
    *end++ = 'e';
    end = std::to_chars(end, text.data() + text.size(), static_cast<int>(decimal.exponent)).ptr;
    double value = 0.0;
    if (std::from_chars(text.data(), end, value).ec == std::errc::result_out_of_range) {
        return decimal.exponent > 0 ? infinity : 0.0;
    }
    return value;
}

/// A decimal number whose digits, which stand for more than 0, go from `first` to `digitsEnd`. from_chars
/// rounds any number of digits correctly, but it does not tell too large from too small, nor what was lost
/// below the normal range.
ScannedReal RoundHardNumber(char const* first, char const* digitsEnd, Exponent exponent)
{
    double value = 0.0;
    if (std::from_chars(first, exponent.end, value).ec == std::errc() && value > smallestNormal) {
        return {value, exponent.end, false};
    }
    Decimal const decimal = CollectDigits(first, digitsEnd, exponent.value);
    value = RoundDecimal(decimal);
    bool const outOfRange = value <= smallestNormal ? IsBelowRange(decimal, value) : value == infinity;
    return {value, exponent.end, outOfRange};
}

/// The first digits of a number as an integer, and the power of ten that they are multiplied with.
struct LeadingDigits
{
    std::uint64_t integer = 0;
    std::int64_t power = 0;
    bool isWhole = true; ///< whether no digits follow, or only zeros
};

/// So many digits always fit into 64 bits.
constexpr std::ptrdiff_t safeDigits = 19;

/// Of the digits from `first` to `last`, with at most one point among them, and a further exponent.
LeadingDigits CollectLeadingDigits(char const* first, char const* last, std::int64_t exponent)
{
    LeadingDigits leading{0, exponent};
    std::ptrdiff_t count = 0;
    bool fraction = false;
    for (; first != last; ++first) {
        if (*first == '.') {
            fraction = true;
        } else if (count < safeDigits) {
            leading.integer = leading.integer * 10 + DigitValue(*first);
            leading.power -= fraction ? 1 : 0;
            count += leading.integer != 0 ? 1 : 0;
        } else {
            leading.isWhole = leading.isWhole && *first == '0';
            leading.power += fraction ? 0 : 1;
        }
    }
    return leading;
}

/// The nearest double, if the leading digits decide it and 128 bits of a power of ten are enough.
bool RoundLeadingDigits(LeadingDigits const& leading, double& value)
{
    double next = 0.0;
    return RoundDecimalProduct(leading.integer, leading.power, value) &&
           (leading.isWhole ||
            (RoundDecimalProduct(leading.integer + 1, leading.power, next) && next == value));
}

/// A decimal number without its sign. Where the digits fit into 53 bits and the power of ten is exact, one
/// multiplication or division rounds correctly (William D. Clinger, How to Read Floating Point Numbers
/// Accurately, 1990); else a product of integers nearly always does, and the rest is left to RoundHardNumber.
ScannedReal ScanDecimal(char const* first, char const* last)
{
    LeadingDigits leading;
    char const* position = first;
    for (; position != last && IsDigit(*position); ++position) {
        leading.integer = leading.integer * 10 + DigitValue(*position);
    }
    std::ptrdiff_t digitCount = position - first;
    if (position != last && *position == '.') {
        char const* const fraction = ++position;
        for (; position != last && IsDigit(*position); ++position) {
            leading.integer = leading.integer * 10 + DigitValue(*position);
        }
        leading.power = fraction - position;
        digitCount -= leading.power;
    }
    if (digitCount == 0) {
        return {0.0, first, false};
    }
    Exponent const exponent = ScanExponent(position, last, 'e');
    leading.power += exponent.value;
    if (digitCount > safeDigits) {
        // They may have run over the 64 bits.
        leading = CollectLeadingDigits(first, position, exponent.value);
    }
    if (leading.integer == 0) {
        return {0.0, exponent.end, false};
    }
    constexpr auto largestPower = static_cast<std::int64_t>(exactPowersOfTen.size()) - 1;
    std::int64_t const power = leading.power;
    if (leading.integer <= std::uint64_t{1} << 53 && power >= -largestPower && power <= largestPower) {
        auto const exact = static_cast<double>(leading.integer);
        return {power < 0 ? exact / exactPowersOfTen[static_cast<std::size_t>(-power)]
                          : exact * exactPowersOfTen[static_cast<std::size_t>(power)],
                exponent.end, false};
    }
    double value = 0.0;
    return RoundLeadingDigits(leading, value) ? ScannedReal{value, exponent.end, false}
                                              : RoundHardNumber(first, position, exponent);
}

/// mantissa * 2^exponent, and a little more if `rest` says so, to the nearest double; mantissa is above 0.
ScannedReal RoundBinary(std::uint64_t mantissa, std::int64_t exponent, bool rest, char const* end)
{
    for (; mantissa >> 63 == 0; mantissa <<= 1) {
        --exponent;
    }
    std::int64_t const leading = exponent + 63; // the power of two of the leading bit
    if (leading > 1023) {
        return {infinity, end, true};
    }
    if (leading < -1075) {
        return {0.0, end, true};
    }
    // Below the normal range more bits than the usual 11 are rounded away, at most all 64.
    constexpr int normalDrop = 11;
    int const below = leading < -1022 ? static_cast<int>(-1022 - leading) : 0;
    int const dropped = normalDrop + below;
    std::uint64_t const kept = dropped < 64 ? mantissa >> dropped : 0;
    std::uint64_t const half = std::uint64_t{1} << (dropped - 1);
    std::uint64_t const lost = dropped < 64 ? mantissa - (kept << dropped) : mantissa;
    bool const up = lost > half || (lost == half && (rest || (kept & 1) != 0));
    double const value =
        std::ldexp(static_cast<double>(kept + (up ? 1 : 0)), static_cast<int>(exponent) + dropped);
    // With 53 bits and no lower bound of the exponent it might have reached the normal range all the same.
    bool const roundsToNormal = below == 1 && mantissa >> normalDrop == (std::uint64_t{1} << 53) - 1 &&
                                (mantissa >> (normalDrop - 1) & 1) != 0;
    bool const tiny = below > 0 && (lost != 0 || rest) && !roundsToNormal;
    return {value, end, tiny || value == infinity};
}

/// A hexadecimal number without its sign and `0x`; `zero` is the position behind the 0, where the number ends
/// if there is no digit.
ScannedReal ScanHexadecimal(char const* zero, char const* last)
{
    std::uint64_t mantissa = 0;
    std::int64_t exponent = 0;
    bool any = false;
    bool rest = false;
    bool fraction = false;
    char const* position = zero + 1;
    for (; position != last; ++position) {
        if (*position == '.' && !fraction) {
            fraction = true;
            continue;
        }
        unsigned int const digit = HexadecimalValue(*position);
        if (digit > 15) {
            break;
        }
        any = true;
        bool const fits = mantissa >> 60 == 0;
        if (fits) {
            mantissa = mantissa * 16 + digit;
        } else {
            rest = rest || digit != 0;
        }
        exponent += (fits ? 0 : 4) - (fraction ? 4 : 0);
    }
    if (!any) {
        return {0.0, zero, false};
    }
    Exponent const further = ScanExponent(position, last, 'p');
    if (mantissa == 0) {
        return {0.0, further.end, false};
    }
    return RoundBinary(mantissa, exponent + further.value, rest, further.end);
}

/// The payload of a NaN: a decimal, octal (leading 0) or hexadecimal (leading 0x) integer of 64 bits.
struct Payload
{
    std::uint64_t value = 0;
    bool outOfRange = false;
};

Payload ReadPayload(char const* first, char const* last)
{
    int base = 10;
    if (last - first > 2 && BeginsWith(first, last, "0x")) {
        base = 16;
        first += 2;
    } else if (first != last && *first == '0') {
        base = 8;
    }
    std::uint64_t value = 0;
    auto const [end, error] = std::from_chars(first, last, value, base);
    bool const outOfRange = error == std::errc::result_out_of_range;
    // A number with anything behind it is no payload; one too large counts as all ones, and as out of range.
    if (end != last) {
        return {0, outOfRange};
    }
    return {outOfRange ? ~std::uint64_t{0} : value, outOfRange};
}

/// `nan` and what may follow it.
ScannedReal ScanNan(char const* first, char const* last)
{
    double const plain = std::numeric_limits<double>::quiet_NaN();
    char const* const wordEnd = first + 3;
    if (wordEnd == last || *wordEnd != '(') {
        return {plain, wordEnd, false};
    }
    char const* const payloadBegin = wordEnd + 1;
    char const* const payloadEnd = std::find_if_not(payloadBegin, last, [](char character) {
        char const lower = LowerCase(character);
        return IsDigit(character) || (lower >= 'a' && lower <= 'z') || character == '_';
    });
    if (payloadEnd == last || *payloadEnd != ')') {
        return {plain, wordEnd, false};
    }
    Payload const payload = ReadPayload(payloadBegin, payloadEnd);
    constexpr std::uint64_t payloadBits = (std::uint64_t{1} << 51) - 1;
    std::uint64_t bits = 0;
    std::memcpy(&bits, &plain, sizeof bits);
    bits |= payload.value & payloadBits;
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return {value, payloadEnd + 1, payload.outOfRange};
}

/// A number without white space and sign.
ScannedReal ScanUnsigned(char const* first, char const* last)
{
    if (first != last && (IsDigit(*first) || *first == '.')) {
        bool const hexadecimal = *first == '0' && BeginsWith(first, last, "0x");
        return hexadecimal ? ScanHexadecimal(first + 1, last) : ScanDecimal(first, last);
    }
    if (BeginsWith(first, last, "infinity")) {
        return {infinity, first + 8, false};
    }
    if (BeginsWith(first, last, "inf")) {
        return {infinity, first + 3, false};
    }
    if (BeginsWith(first, last, "nan")) {
        return ScanNan(first, last);
    }
    return {0.0, first, false};
}

} // namespace

ScannedReal ScanReal(char const* first, char const* last)
{
    char const* position = SkipWhiteSpace(first, last);
    char const sign = position != last ? *position : '\0';
    bool const negative = sign == '-';
    position += static_cast<int>(negative) | static_cast<int>(sign == '+');
    ScannedReal const number = ScanUnsigned(position, last);
    if (number.end == position) {
        return {0.0, first, false};
    }
    // The sign of a coordinate is as good as random: it is worth no branch.
    constexpr double signs[] = {0.0, -0.0};
    return {std::copysign(number.value, signs[negative ? 1 : 0]), number.end, number.outOfRange};
}

ScannedInteger ScanInteger(char const* first, char const* last)
{
    char const* position = SkipWhiteSpace(first, last);
    bool const negative = position != last && *position == '-';
    if (position != last && (*position == '-' || *position == '+')) {
        ++position;
    }
    char const* const digits = position;
    std::int64_t const limit = std::int64_t{std::numeric_limits<std::int32_t>::max()} + (negative ? 1 : 0);
    std::int64_t value = 0;
    for (; position != last && IsDigit(*position); ++position) {
        value = std::min(value * 10 + DigitValue(*position), limit + 1);
    }
    if (position == digits) {
        return {0, first, false};
    }
    std::int64_t const bounded = std::min(value, limit);
    return {static_cast<std::int32_t>(negative ? -bounded : bounded), position, value > limit};
}

bool ConvertReal(char const* first, char const* last, double& value)
{
    if (first == last) {
        return false;
    }
    ScannedReal const number = ScanReal(first, last);
    errno = number.outOfRange ? ERANGE : 0;
    if (number.outOfRange || number.end != last) {
        return false;
    }
    value = number.value;
    return true;
}

} // namespace Vorlane::NumberScanning
