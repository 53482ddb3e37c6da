#ifndef VORLANE_NUMERICS_RATIONAL_H
#define VORLANE_NUMERICS_RATIONAL_H

/// \file
/// A small exact fraction with arithmetic, comparison, text and archive forms.

#include "vorlane/Export.h"
#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/numerics/NumericUtils.h"

#include <cstdint>
#include <iosfwd>

namespace Vorlane {

/// A fraction of two 16-bit integers. The interface speaks `int`; results are formed in 32 bits, which wrap
/// around, and their low 16 bits are stored. Nothing reports an overflow: 1/300 + 1/300 forms 600/90000,
/// stores 600/24464 and ends as 75/3058. No common factor is taken out beforehand.
///
/// A fraction is kept in lowest terms with the sign in the numerator, with two exceptions: a numerator of 0
/// keeps its denominator (0/5), and a denominator of 0, which stands for infinity, keeps its numerator
/// (-3/0). 0/0 can exist.
class VORLANE_EXPORT Rational
{
public:
    /// The fraction in lowest terms.
    Rational(int numerator = 0, int denominator = 1) { SetFraction(numerator, denominator); }

    /// Stores the fraction in lowest terms.
    Rational& SetFraction(int numerator, int denominator);

    /// Combine the new number with the present other one, and store the result in lowest terms.
    Rational& SetNumerator(int numerator) { return SetFraction(numerator, m_denominator); }
    Rational& SetDenominator(int denominator) { return SetFraction(m_numerator, denominator); }

    /// The parts of the stored fraction, which is in lowest terms.
    int GetNumerator() const { return m_numerator; }
    int GetDenominator() const { return m_denominator; }
    void GetFraction(short& numerator, short& denominator) const;
    void GetFraction(int& numerator, int& denominator) const;
    void GetFraction(long& numerator, long& denominator) const;

    /// The quotient. With a denominator of 0: the most negative double for a negative numerator, else the
    /// largest.
    double CalcValue() const;
    operator double() const { return CalcValue(); }

    /// The form "3/4".
    CString String() const;

    /// Whether the fraction is 0; 0/0 is not.
    bool operator!() const { return m_numerator == 0 && m_denominator != 0; }

    /// The object itself.
    Rational& operator+() { return *this; }

    /// Negates the object itself.
    Rational& operator-();

    /// A new fraction; a constant one stays as it is.
    Rational operator+() const { return Rational(m_numerator, m_denominator); }
    Rational operator-() const;

    /// Forms the sum, the difference or the product in 32 bits and stores it in lowest terms.
    Rational& operator+=(Rational const& other);
    Rational& operator-=(Rational const& other);
    Rational& operator*=(Rational const& other);

    /// A division by 0 gives a denominator of 0.
    Rational& operator/=(Rational const& other);

private:
    void Simplify();

    std::int16_t m_numerator = 0;
    std::int16_t m_denominator = 1;
};

/// A new fraction, as the assignments above form it.
VORLANE_EXPORT Rational operator+(Rational const& a, Rational const& b);
VORLANE_EXPORT Rational operator-(Rational const& a, Rational const& b);
VORLANE_EXPORT Rational operator*(Rational const& a, Rational const& b);
VORLANE_EXPORT Rational operator/(Rational const& a, Rational const& b);

/// Comparisons are those of the cross products, numerator by denominator. So all x/0 are equal, 0/0 equals
/// everything, and a negative denominator, which only 16-bit overflow leaves, turns the order round.
VORLANE_EXPORT bool operator==(Rational const& a, Rational const& b);
VORLANE_EXPORT bool operator!=(Rational const& a, Rational const& b);
VORLANE_EXPORT bool operator<(Rational const& a, Rational const& b);
VORLANE_EXPORT bool operator<=(Rational const& a, Rational const& b);
VORLANE_EXPORT bool operator>(Rational const& a, Rational const& b);
VORLANE_EXPORT bool operator>=(Rational const& a, Rational const& b);

/// Stores the numerator, then the denominator, in 2 bytes each.
///
/// \throws CArchiveException with the cause readOnly if the archive is loading.
VORLANE_EXPORT CArchive& operator<<(CArchive& archive, Rational& value);
/// The same for constants and results, which would otherwise be stored as the double that they convert to.
VORLANE_EXPORT CArchive& operator<<(CArchive& archive, Rational const& value);

/// Loads what the other operator stored, and brings it to lowest terms.
///
/// \throws CArchiveException with the cause writeOnly if the archive is storing, endOfFile if it ends
///         early; `value` is then unchanged.
VORLANE_EXPORT CArchive& operator>>(CArchive& archive, Rational& value);

/// Writes the form "3/4". A width of the stream applies to each of the three items: with 4, one half is
/// "   1   /   2".
VORLANE_EXPORT std::ostream& operator<<(std::ostream& stream, Rational const& value);

/// Reads two 16-bit numbers with a slash between, white space around it allowed, and sets the fraction. If
/// anything else stands there `value` is unchanged and the stream fails; a character in the place of the
/// slash is put back.
VORLANE_EXPORT std::istream& operator>>(std::istream& stream, Rational& value);

} // namespace Vorlane

#endif
