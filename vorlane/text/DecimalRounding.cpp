#include "vorlane/text/DecimalRoundingInternal.h"

#include <array>
#include <cstddef>
#include <cstring>

// The product of 64 bits of digits and 128 bits of a power of five holds the number but for its last places,
// and these decide nothing, except between two doubles; after D. Lemire, "Number Parsing at a Gigabyte per
// Second" (2021).

namespace Vorlane::NumberScanning {

namespace {

// Digits of 64 bits times a power beyond these are no normal double.
constexpr int firstPower = -326;
constexpr int lastPower = 308;

/// A power of five: (high * 2^64 + low) * 2^exponent, and a rest that was cut off; the highest bit is set.
struct PowerOfFive
{
    std::uint64_t high;
    std::uint64_t low;
    int exponent;
};

/// A long number for the making of the table: an integer over 2^scale.
class LongNumber
{
public:
    /// 2^bit / 2^scale.
    constexpr LongNumber(int bit, int scale) : m_scale(scale)
    {
        m_limbs[static_cast<std::size_t>(bit / 32)] = std::uint32_t{1} << bit % 32;
    }

    constexpr void MultiplyByFive()
    {
        std::uint64_t carry = 0;
        for (std::uint32_t& limb : m_limbs) {
            carry += std::uint64_t{limb} * 5;
            limb = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
    }

    constexpr void DivideByFive()
    {
        std::uint64_t remainder = 0;
        for (std::size_t i = m_limbs.size(); i != 0; --i) {
            remainder = remainder << 32 | m_limbs[i - 1];
            m_limbs[i - 1] = static_cast<std::uint32_t>(remainder / 5);
            remainder %= 5;
        }
    }

    /// Its 128 highest bits; there have to be so many.
    constexpr PowerOfFive Leading() const
    {
        std::size_t top = m_limbs.size();
        while (m_limbs[top - 1] == 0) {
            --top;
        }
        int const zeros = __builtin_clz(m_limbs[top - 1]);
        return {LimbsBelow(top, zeros), LimbsBelow(top - 2, zeros),
                static_cast<int>(top) * 32 - zeros - 128 - m_scale};
    }

private:
    /// 64 bits, beginning so many zeros below the upper end of a limb.
    constexpr std::uint64_t LimbsBelow(std::size_t top, int zeros) const
    {
        std::uint64_t const two = std::uint64_t{m_limbs[top - 1]} << 32 | m_limbs[top - 2];
        return two << zeros | std::uint64_t{m_limbs[top - 3]} >> (32 - zeros);
    }

    std::array<std::uint32_t, 35> m_limbs{}; // the lowest first
    int m_scale;
};

constexpr auto MakePowersOfFive()
{
    std::array<PowerOfFive, lastPower - firstPower + 1> powers{};
    auto const at = [&powers](int power) -> PowerOfFive& {
        return powers[static_cast<std::size_t>(power - firstPower)];
    };
    LongNumber number(128, 128);
    for (int power = 0; power <= lastPower; ++power, number.MultiplyByFive()) {
        at(power) = number.Leading();
    }
    // What the divisions cut off, one after the other, is what one division by their product would.
    number = LongNumber(1100, 1100);
    for (int power = -1; power >= firstPower; --power) {
        number.DivideByFive();
        at(power) = number.Leading();
    }
    return powers;
}

constexpr auto powersOfFive = MakePowersOfFive();

struct Product
{
    std::uint64_t high;
    std::uint64_t low;
};

constexpr Product Multiply(std::uint64_t a, std::uint64_t b)
{
    std::uint64_t const lowMask = 0xFFFFFFFF;
    std::uint64_t const lowLow = (a & lowMask) * (b & lowMask);
    std::uint64_t const highLow = (a >> 32) * (b & lowMask) + (lowLow >> 32);
    std::uint64_t const lowHigh = (a & lowMask) * (b >> 32) + (highLow & lowMask);
    return {(a >> 32) * (b >> 32) + (highLow >> 32) + (lowHigh >> 32), lowHigh << 32 | (lowLow & lowMask)};
}

} // namespace

bool RoundDecimalProduct(std::uint64_t digits, std::int64_t power, double& value)
{
    if (power < firstPower || power > lastPower) {
        return false;
    }
    PowerOfFive const& five = powersOfFive[static_cast<std::size_t>(power - firstPower)];
    int const shift = __builtin_clzll(digits);
    Product const upper = Multiply(digits << shift, five.high);
    std::uint64_t const carried = Multiply(digits << shift, five.low).high;
    std::uint64_t low = upper.low + carried;
    std::uint64_t high = upper.high + (low < carried ? 1 : 0);
    // One of the two highest bits is set; now it is the highest.
    int const raise = high >> 63 != 0 ? 0 : 1;
    high = high << raise | (low >> 63 & static_cast<std::uint64_t>(raise));
    low <<= raise;

    // What was cut off comes to less than four units of `low`. With them the part behind the 53 bits may be
    // half a unit after all, or what seems to be half may be more; half itself is a tie.
    bool const isBelowHalf = (high & 0x7FF) == 0x3FF && low > ~std::uint64_t{4};
    bool const isHalf = (high & 0x7FF) == 0x400 && low == 0;
    int const exponent = static_cast<int>(power) + five.exponent - shift - raise + 191 + 1023;
    if (isBelowHalf || isHalf || exponent < 1 || exponent > 2045) {
        return false;
    }
    // Without its leading bit, which counts as one in the exponent; rounding up may carry over into it.
    std::uint64_t const bits =
        (static_cast<std::uint64_t>(exponent - 1) << 52) + (high >> 11) + (high >> 10 & 1);
    std::memcpy(&value, &bits, sizeof value);
    return true;
}

} // namespace Vorlane::NumberScanning
