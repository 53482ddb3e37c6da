// An expression, a zero byte and a text; or another zero byte, a count and more of the text, which is
// repeated so often then. Short ones are compared with the slow matcher of the tests.

#include "fuzz/ExpressionChecks.h"
#include "vorlane/text/Pattern.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

using VorlaneFuzz::Require;

constexpr long maximumSteps = 10000; // of the slow matcher

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

std::string TextOf(std::string const& input)
{
    std::size_t const border = std::min(input.find('\0'), input.size());
    std::string const part = input.substr(0, border);
    std::string text = part;
    if (border + 2 <= input.size()) {
        for (int count = input[border + 1] % 32; count > 0; --count) {
            text += part;
        }
        text += input.substr(border + 2);
    }
    return text;
}

/// The substrings are the spans of the engine up to the first that is unset or empty.
void CheckSubstrings(Vorlane::RegExpression const& found, bool matches, std::string const& expression,
                     std::string const& text)
{
    VorlaneFuzz::Compiled const compiled = VorlaneFuzz::Compile(expression);
    bool const isFound = compiled != nullptr && !text.empty() &&
                         Vorlane::SearchExpression(compiled.get(), text.c_str(), text.size());
    int count = 0;
    for (; isFound && count < Vorlane::groupSlots; ++count) {
        char const* const begin = compiled->m_groupStart[count];
        char const* const end = compiled->m_groupEnd[count];
        if (begin == nullptr || begin == end)
            break;
        Require(found.GetSubstring(count) == CString(begin, static_cast<int>(end - begin)));
        Require(found.GetSubstringStart(count) == begin - text.c_str());
    }
    Require(found.GetSubstringCount() == count);
    Require(matches == (count > 0 || (text.empty() && expression == ".*")));
}

/// Copies match and answer as the original does, which keeps what it has.
void CheckCopies(Vorlane::RegExpression const& found, bool matches, std::string const& expression,
                 std::string const& text)
{
    Vorlane::RegExpression copied(found), assigned("z+", true);
    Require(assigned == "zz" && assigned != "az");
    assigned = copied;
    Vorlane::RegExpression const& self = assigned;
    assigned = self;
    CString const whole = copied.GetSubstring(0), before(whole, whole.GetLength());
    CheckSubstrings(copied, matches, expression, text);
    CheckSubstrings(assigned, matches, expression, text);
    std::unique_ptr<Vorlane::Pattern<CString>> const pattern(found.Copy());
    CString const other = ToText("z" + text);
    Require((assigned == other) == copied.Match(other, false) && (*pattern == other) == (assigned == other));
    Require(whole == before);
    Require((assigned == ToText(text)) == matches && (*pattern != ToText(text)) == !matches);
    if (!text.empty())
        CheckSubstrings(assigned, matches, expression, text);
    CheckSubstrings(found, matches, expression, text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string const input(reinterpret_cast<char const*>(data), size);
    std::size_t const border = input.find('\0');
    std::string const expression = input.substr(0, border);
    std::string const text = border == std::string::npos ? std::string() : TextOf(input.substr(border + 1));
    Vorlane::RegExpression found(ToText(expression), false);
    bool const matches = found.Match(ToText(text), false);
    CheckSubstrings(found, matches, Adjusted(expression), text);
    CheckCopies(found, matches, Adjusted(expression), text);
    bool const exact = found.Match(ToText(text), true);
    Require(!exact || matches);
    if (expression.size() <= 60 && text.size() <= 300)
        VorlaneFuzz::CheckExpression(Adjusted(expression), {text}, maximumSteps);
    return 0;
}
