#include "vorlane/numerics/Rational.h"

#include <cstdlib>
#include <istream>
#include <limits>
#include <numeric>
#include <ostream>

namespace Vorlane {

namespace {

// Arithmetic modulo 2 to the power of 32. Products of two 16-bit numbers fit; the sum of two of them may not.

int Product(int a, int b)
{
    return static_cast<int>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

int Sum(int a, int b)
{
    return static_cast<int>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

int Negative(int a)
{
    return static_cast<int>(0u - static_cast<std::uint32_t>(a));
}

std::int16_t Low16Bits(int value)
{
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(value));
}

} // namespace

Rational& Rational::SetFraction(int numerator, int denominator)
{
    // The tests look at the numbers before they are cut to 16 bits.
    bool const isPlain = denominator == 1 || denominator == 0 || numerator == 0;
    if (!isPlain && denominator == -1) {
        m_numerator = Low16Bits(Negative(numerator));
        m_denominator = 1;
    } else {
        m_numerator = Low16Bits(numerator);
        m_denominator = Low16Bits(denominator);
        if (!isPlain) {
            Simplify();
        }
    }
    return *this;
}

void Rational::Simplify()
{
    // Absolute values, as ints: that of -32768 has no place in 16 bits.
    bool const isNegative = (m_numerator < 0) != (m_denominator < 0);
    int const divisor = std::gcd(int{m_numerator}, int{m_denominator});
    if (divisor != 0) {
        int const numerator = std::abs(int{m_numerator}) / divisor;
        m_denominator = Low16Bits(std::abs(int{m_denominator}) / divisor);
        m_numerator = Low16Bits(isNegative ? -numerator : numerator);
    }
}

void Rational::GetFraction(short& numerator, short& denominator) const
{
    numerator = m_numerator;
    denominator = m_denominator;
}

void Rational::GetFraction(int& numerator, int& denominator) const
{
    numerator = m_numerator;
    denominator = m_denominator;
}

void Rational::GetFraction(long& numerator, long& denominator) const
{
    numerator = m_numerator;
    denominator = m_denominator;
}

double Rational::CalcValue() const
{
    if (m_denominator != 0) {
        return static_cast<double>(m_numerator) / static_cast<double>(m_denominator);
    }
    return m_numerator < 0 ? std::numeric_limits<double>::lowest() : std::numeric_limits<double>::max();
}

CString Rational::String() const
{
    CString text;
    text.Format("%d%c%d", int{m_numerator}, '/', int{m_denominator});
    return text;
}

Rational& Rational::operator-()
{
    std::int16_t& signCarrier = m_denominator < 0 ? m_denominator : m_numerator;
    signCarrier = Low16Bits(-signCarrier);
    return *this;
}

Rational Rational::operator-() const
{
    return m_denominator < 0 ? Rational(m_numerator, -m_denominator) : Rational(-m_numerator, m_denominator);
}

Rational& Rational::operator+=(Rational const& other)
{
    return SetFraction(
        Sum(Product(m_numerator, other.m_denominator), Product(other.m_numerator, m_denominator)),
        Product(m_denominator, other.m_denominator));
}

Rational& Rational::operator-=(Rational const& other)
{
    return SetFraction(
        Sum(Product(m_numerator, other.m_denominator), Negative(Product(other.m_numerator, m_denominator))),
        Product(m_denominator, other.m_denominator));
}

Rational& Rational::operator*=(Rational const& other)
{
    return SetFraction(Product(m_numerator, other.m_numerator), Product(m_denominator, other.m_denominator));
}

Rational& Rational::operator/=(Rational const& other)
{
    return SetFraction(Product(m_numerator, other.m_denominator), Product(m_denominator, other.m_numerator));
}

Rational operator+(Rational const& a, Rational const& b)
{
    return Rational(a) += b;
}

Rational operator-(Rational const& a, Rational const& b)
{
    return Rational(a) -= b;
}

Rational operator*(Rational const& a, Rational const& b)
{
    return Rational(a) *= b;
}

Rational operator/(Rational const& a, Rational const& b)
{
    return Rational(a) /= b;
}

namespace {

// The cross products: a compares to b as these numbers do.

int LeftProduct(Rational const& a, Rational const& b)
{
    return Product(a.GetNumerator(), b.GetDenominator());
}

int RightProduct(Rational const& a, Rational const& b)
{
    return Product(a.GetDenominator(), b.GetNumerator());
}

} // namespace

bool operator==(Rational const& a, Rational const& b)
{
    return LeftProduct(a, b) == RightProduct(a, b);
}

bool operator!=(Rational const& a, Rational const& b)
{
    return LeftProduct(a, b) != RightProduct(a, b);
}

bool operator<(Rational const& a, Rational const& b)
{
    return LeftProduct(a, b) < RightProduct(a, b);
}

bool operator<=(Rational const& a, Rational const& b)
{
    return LeftProduct(a, b) <= RightProduct(a, b);
}

bool operator>(Rational const& a, Rational const& b)
{
    return LeftProduct(a, b) > RightProduct(a, b);
}

bool operator>=(Rational const& a, Rational const& b)
{
    return LeftProduct(a, b) >= RightProduct(a, b);
}

CArchive& operator<<(CArchive& archive, Rational& value)
{
    return archive << static_cast<Rational const&>(value);
}

CArchive& operator<<(CArchive& archive, Rational const& value)
{
    short numerator = 0;
    short denominator = 0;
    value.GetFraction(numerator, denominator);
    return archive << numerator << denominator;
}

CArchive& operator>>(CArchive& archive, Rational& value)
{
    short numerator = 0;
    short denominator = 0;
    archive >> numerator >> denominator;
    value.SetFraction(numerator, denominator);
    return archive;
}

std::ostream& operator<<(std::ostream& stream, Rational const& value)
{
    short numerator = 0;
    short denominator = 0;
    value.GetFraction(numerator, denominator);
    // Each item takes the width and resets it to 0.
    std::streamsize const width = stream.width();
    if (width < 1) {
        return stream << numerator << '/' << denominator;
    }
    stream << numerator;
    stream.width(width);
    stream << '/';
    stream.width(width);
    return stream << denominator;
}

std::istream& operator>>(std::istream& stream, Rational& value)
{
    short numerator = 0;
    char slash = 0;
    short denominator = 0;
    if (!(stream >> numerator >> slash)) {
        return stream;
    }
    if (slash != '/') {
        stream.putback(slash);
        stream.setstate(std::ios_base::failbit);
    } else if (stream >> denominator) {
        value.SetFraction(numerator, denominator);
    }
    return stream;
}

} // namespace Vorlane
