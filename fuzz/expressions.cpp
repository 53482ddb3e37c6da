// An expression and a text, parted by a zero byte. Short ones are compared with the slow matcher of the
// tests.

#include "tests/text/SlowExpression.h"
#include "vorlane/text/Pattern.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

constexpr long maximumSteps = 3000; // of the slow matcher

void Check(bool condition)
{
    if (!condition)
        std::abort();
}

CString ToText(std::string const& characters)
{
    return CString(characters.data(), static_cast<int>(characters.size()));
}

/// The expression as the constructor of RegExpression leaves it.
std::string Adjusted(std::string expression)
{
    char const* const whiteSpace = " \t\n\v\f\r";
    expression.erase(0, expression.find_first_not_of(whiteSpace));
    expression.erase(expression.find_last_not_of(whiteSpace) + 1);
    return expression[0] == '*' ? "." + expression : expression;
}

void Compare(Vorlane::RegExpression const& found, bool matches, std::string const& expression,
             std::string const& text)
{
    VorlaneTest::SlowExpression slow(Adjusted(expression));
    VorlaneTest::SlowExpression::Spans spans;
    auto const result =
        slow.IsValid() ? slow.Search(text, spans, maximumSteps) : VorlaneTest::SlowExpression::doesNotMatch;
    if (text.empty() || result == VorlaneTest::SlowExpression::tooSlow)
        return;
    int count = 0;
    while (result == VorlaneTest::SlowExpression::matches && count < 10 &&
           spans[static_cast<std::size_t>(count)].first < spans[static_cast<std::size_t>(count)].second)
        ++count;
    Check(matches == (count > 0));
    Check(found.GetSubstringCount() == count);
    for (int i = 0; i < count; ++i) {
        auto const [begin, end] = spans[static_cast<std::size_t>(i)];
        auto const length = static_cast<std::size_t>(end - begin);
        Check(found.GetSubstring(i) == text.substr(static_cast<std::size_t>(begin), length).c_str());
        Check(found.GetSubstringStart(i) == begin);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string const input(reinterpret_cast<char const*>(data), size);
    std::size_t const border = input.find('\0');
    std::string const expression = input.substr(0, border);
    std::string const text = border == std::string::npos ? std::string() : input.substr(border + 1);
    Vorlane::RegExpression found(ToText(expression), false);
    bool const matches = found.Match(ToText(text), false);
    if (expression.size() <= 40 && text.size() <= 100)
        Compare(found, matches, expression, text);
    bool const exact = found.Match(ToText(text), true);
    Check(!exact || matches);
    return 0;
}
