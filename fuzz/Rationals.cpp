// A calculation with fractions, from left to right, beside a model in 64 bits: `1/300 + 1/300 : -2/7 ~ d 3`.
// The letters `n` and `d` set the numerator and the denominator, `~` negates; other signs than + - * divide.

#include "fuzz/Require.h"
#include "vorlane/numerics/Rational.h"

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <utility>

using Vorlane::Rational;
using VorlaneFuzz::Require;

namespace {

/// The number with the same low `bits` in the range of a signed number of that width.
std::int64_t Wrapped(std::int64_t value, int bits)
{
    std::int64_t const range = std::int64_t{1} << bits;
    std::int64_t const low = ((value % range) + range) % range;
    return low < range / 2 ? low : low - range;
}

/// A fraction by the rules alone, in 64 bits with explicit wrapping.
struct Model
{
    std::int64_t numerator;
    std::int64_t denominator;
};

Model Stored(std::int64_t numerator, std::int64_t denominator)
{
    std::int64_t const n = Wrapped(numerator, 32);
    std::int64_t const d = Wrapped(denominator, 32);
    if (d == -1 && n != 0) {
        return {Wrapped(-n, 16), 1};
    }
    Model const cut = {Wrapped(n, 16), Wrapped(d, 16)};
    std::int64_t a = std::abs(cut.numerator);
    std::int64_t b = std::abs(cut.denominator);
    while (b != 0) {
        a = std::exchange(b, a % b);
    }
    if (d == 1 || d == 0 || n == 0 || a == 0) {
        return cut;
    }
    std::int64_t const sign = (cut.numerator < 0) != (cut.denominator < 0) ? -1 : 1;
    return {Wrapped(sign * std::abs(cut.numerator) / a, 16), Wrapped(std::abs(cut.denominator) / a, 16)};
}

Model Negative(Model const& a)
{
    return a.denominator < 0 ? Model{a.numerator, Wrapped(-a.denominator, 16)}
                             : Model{Wrapped(-a.numerator, 16), a.denominator};
}

double Quotient(Model const& a)
{
    double const largest = std::numeric_limits<double>::max();
    return a.denominator != 0 ? static_cast<double>(a.numerator) / static_cast<double>(a.denominator)
                              : (a.numerator < 0 ? -largest : largest);
}

void RequireEqual(Rational const& value, Model const& model)
{
    Require(value.GetNumerator() == model.numerator && value.GetDenominator() == model.denominator);
}

/// Every way to look at the fraction.
void CheckViews(Rational const& value, Model const& model)
{
    RequireEqual(value, model);
    std::pair<short, short> shorts;
    std::pair<int, int> ints;
    std::pair<long, long> longs;
    value.GetFraction(shorts.first, shorts.second);
    value.GetFraction(ints.first, ints.second);
    value.GetFraction(longs.first, longs.second);
    Require(longs == std::pair<long, long>(model.numerator, model.denominator));
    Require(longs == std::pair<long, long>(shorts) && longs == std::pair<long, long>(ints));
    Require(value.String() ==
            (std::to_string(model.numerator) + '/' + std::to_string(model.denominator)).c_str());
    Require(value.CalcValue() == Quotient(model) && static_cast<double>(value) == Quotient(model));
    Require(!value == (model.numerator == 0 && model.denominator != 0));
    RequireEqual(+value, Stored(model.numerator, model.denominator));
    RequireEqual(-value, model.denominator < 0 ? Stored(model.numerator, -model.denominator)
                                               : Stored(-model.numerator, model.denominator));
}

Model Combined(char operation, Model const& a, Model const& b)
{
    std::int64_t const left = a.numerator * b.denominator;
    std::int64_t const right = b.numerator * a.denominator;
    switch (operation) {
    case '+':
        return Stored(left + right, a.denominator * b.denominator);
    case '-':
        return Stored(left - right, a.denominator * b.denominator);
    case '*':
        return Stored(a.numerator * b.numerator, a.denominator * b.denominator);
    default:
        return Stored(left, a.denominator * b.numerator);
    }
}

Rational& Combine(char operation, Rational& a, Rational const& b)
{
    return operation == '+' ? a += b : operation == '-' ? a -= b : operation == '*' ? a *= b : a /= b;
}

void CheckPair(Rational const& a, Model const& modelA, Rational const& b, Model const& modelB)
{
    RequireEqual(a + b, Combined('+', modelA, modelB));
    RequireEqual(a - b, Combined('-', modelA, modelB));
    RequireEqual(a * b, Combined('*', modelA, modelB));
    RequireEqual(a / b, Combined(':', modelA, modelB));
    std::int64_t const left = modelA.numerator * modelB.denominator;
    std::int64_t const right = modelB.numerator * modelA.denominator;
    Require((a == b) == (left == right) && (a != b) == (left != right));
    Require((a < b) == (left < right) && (a <= b) == (left <= right));
    Require((a > b) == (left > right) && (a >= b) == (left >= right));
}

/// Of one object with itself.
void CheckSelf(Rational const& value, Model const& model)
{
    for (char const operation : {'+', '-', '*', ':'}) {
        Rational result(value);
        RequireEqual(Combine(operation, result, result), Combined(operation, model, model));
    }
}

class Calculation
{
public:
    explicit Calculation(char const* text) : m_next(text)
    {
        int const numerator = Number();
        int const denominator = Denominator();
        m_value.SetFraction(numerator, denominator);
        m_model = Stored(numerator, denominator);
        CheckViews(m_value, m_model);
    }

    bool HasEnded() const { return *m_next == '\0'; }

    void Step()
    {
        char const operation = *m_next++;
        int const number = operation == '~' ? 0 : Number();
        if (operation == '~') {
            Require(&-m_value == &m_value && &+m_value == &m_value);
            m_model = Negative(m_model);
        } else if (operation == 'n') {
            m_value.SetNumerator(number);
            m_model = Stored(number, m_model.denominator);
        } else if (operation == 'd') {
            m_value.SetDenominator(number);
            m_model = Stored(m_model.numerator, number);
        } else if (operation != ' ') {
            int const denominator = Denominator();
            Rational const other(number, denominator);
            Model const model = Stored(number, denominator);
            CheckPair(m_value, m_model, other, model);
            Combine(operation, m_value, other);
            m_model = Combined(operation, m_model, model);
        }
        CheckViews(m_value, m_model);
        CheckSelf(m_value, m_model);
    }

private:
    /// Out of any number of digits, the low 32 bits.
    int Number()
    {
        char* end = nullptr;
        long const number = std::strtol(m_next, &end, 10);
        m_next = end;
        return static_cast<int>(static_cast<std::uint32_t>(number));
    }

    int Denominator()
    {
        bool const isThere = *m_next == '/';
        m_next += isThere ? 1 : 0;
        return isThere ? Number() : 1;
    }

    char const* m_next;
    Rational m_value;
    Model m_model{};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string const text(reinterpret_cast<char const*>(data), size < 200 ? size : 200);
    Calculation calculation(text.c_str());
    while (!calculation.HasEnded()) {
        calculation.Step();
    }
    return 0;
}
