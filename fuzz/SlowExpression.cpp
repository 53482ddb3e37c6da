#include "fuzz/SlowExpression.h"

#include <bitset>
#include <cctype>
#include <cstring>

namespace VorlaneFuzz {

SlowExpression::SlowExpression(std::string const& expression)
    : m_expression(expression.c_str()), m_whole(Alternatives())
{
    m_isValid = m_isValid && m_at == m_expression.size();
}

/// Whether one of the characters is next, or the end if there are none.
bool SlowExpression::IsNext(char const* characters) const
{
    char const next = m_expression.c_str()[m_at];
    return next == '\0' ? *characters == '\0' : std::strchr(characters, next) != nullptr;
}

SlowExpression::Part SlowExpression::Alternatives()
{
    Part result = Branch();
    bool haveWidth = m_hasWidth;
    while (IsNext("|\n")) {
        ++m_at;
        result = [first = result, second = Branch()](int at, Then const& then) {
            return first(at, then) || second(at, then);
        };
        haveWidth = haveWidth && m_hasWidth;
    }
    m_hasWidth = haveWidth;
    return result;
}

SlowExpression::Part SlowExpression::Branch()
{
    Part result = [](int at, Then const& then) {
        return then(at);
    };
    bool hasWidth = false;
    while (m_isValid && !IsNext("") && !IsNext("|\n)")) {
        result = [first = result, second = Piece()](int at, Then const& then) {
            return first(at, [&](int middle) { return second(middle, then); });
        };
        hasWidth = hasWidth || m_hasWidth;
    }
    m_hasWidth = hasWidth;
    return result;
}

SlowExpression::Part SlowExpression::Piece()
{
    Part const once = Atom();
    if (!IsNext("*+?"))
        return once;
    char const quantifier = m_expression[m_at++];
    m_isValid = m_isValid && (m_hasWidth || quantifier == '?') && !IsNext("*+?");
    m_hasWidth = quantifier == '+';
    return [once, quantifier](int begin, Then const& then) {
        Then const repeat = [&](int at) {
            return once(at, quantifier == '?' ? then : repeat) || then(at);
        };
        return quantifier == '+' ? once(begin, repeat) : repeat(begin);
    };
}

/// One test of a position, which takes so many characters.
SlowExpression::Part SlowExpression::Test(std::function<bool(int)> const& holds, int width)
{
    m_hasWidth = width > 0;
    return [this, holds, width](int at, Then const& then) {
        return --m_steps >= 0 && holds(at) && then(at + width);
    };
}

SlowExpression::Part SlowExpression::Atom()
{
    char const c = m_expression[m_at++];
    if (c == '(')
        return Group();
    if (c == '[')
        return Set();
    if (c == '^')
        return Test([](int at) { return at == 0; }, 0);
    if (c == '$')
        return Test([this](int at) { return m_text[at] == '\0'; }, 0);
    if (c == '.')
        return Test([this](int at) { return m_text[at] != '\0'; }, 1);
    bool const isQuoted = c == '\\' && !IsNext("");
    m_isValid = m_isValid && (isQuoted || std::strchr("*+?\\", c) == nullptr);
    char const literal = isQuoted ? m_expression[m_at++] : c;
    if (isQuoted && literal == '<')
        return Test([this](int at) { return IsWordAt(at) && !IsWordAt(at - 1); }, 0);
    if (isQuoted && literal == '>')
        return Test([this](int at) { return !IsWordAt(at); }, 0);
    return Test([this, literal](int at) { return m_text[at] == literal; }, 1);
}

SlowExpression::Part SlowExpression::Group()
{
    auto const number = static_cast<std::size_t>(++m_groups);
    Part const inside = Alternatives();
    m_isValid = m_isValid && IsNext(")") && number < 10;
    m_at += IsNext(")");
    return [this, inside, number](int begin, Then const& then) {
        return inside(begin, [&](int end) {
            std::pair<int, int> const before = std::exchange((*m_spans)[number], {begin, end});
            bool const isFound = then(end);
            (*m_spans)[number] = isFound ? (*m_spans)[number] : before;
            return isFound;
        });
    };
}

SlowExpression::Part SlowExpression::Set()
{
    bool const isNegated = IsNext("^");
    std::size_t const first = m_at + isNegated;
    std::size_t const close = m_expression.find(']', first + (m_expression.c_str()[first] == ']'));
    m_isValid = m_isValid && close != std::string::npos;
    std::bitset<256> members;
    for (m_at = first; m_isValid && m_at < close; ++m_at) {
        bool const isRange = m_expression[m_at] == '-' && m_at > first && m_at + 1 < close;
        auto const low = static_cast<unsigned char>(m_expression[isRange ? m_at - 1 : m_at]);
        m_at += isRange;
        auto const high = static_cast<unsigned char>(m_expression[m_at]);
        m_isValid = low <= high;
        for (std::size_t member = low; member <= high; ++member)
            members.set(member);
    }
    m_at += m_isValid;
    return Test(
        [=](int at) {
            return m_text[at] != '\0' && members[static_cast<unsigned char>(m_text[at])] != isNegated;
        },
        1);
}

bool SlowExpression::IsWordAt(int at) const
{
    int const c = at < 0 ? 0 : static_cast<unsigned char>(m_text[at]);
    return c < 128 && (std::isalnum(c) != 0 || c == '_');
}

SlowExpression::Result SlowExpression::Search(std::string const& text, Spans& spans, long maximumSteps)
{
    m_text = text.c_str();
    m_spans = &spans;
    m_steps = maximumSteps;
    for (int begin = 0;; ++begin) {
        spans.fill({-1, -1});
        bool const isFound = m_whole(begin, [&](int end) {
            spans[0] = {begin, end};
            return true;
        });
        if (m_steps < 0 || isFound || m_text[begin] == '\0')
            return m_steps < 0 ? tooSlow : isFound ? matches : doesNotMatch;
    }
}

} // namespace VorlaneFuzz
