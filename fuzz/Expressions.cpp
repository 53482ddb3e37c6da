// An expression, a zero byte and a text; or another zero byte, a count and more of the text, which is
// repeated so often then. Short ones are compared with the slow matcher of the tests.

#include "fuzz/ExpressionChecks.h"
#include "vorlane/text/Pattern.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace {

using VorlaneFuzz::Require;

constexpr long maximumSteps = 5000; // of the slow matcher

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

using Substrings = std::vector<std::pair<int, CString>>; // where they start, and what they are

/// The spans of the engine up to the first that is unset or empty.
Substrings FindSubstrings(std::string const& expression, std::string const& text)
{
    VorlaneFuzz::Compiled const compiled = VorlaneFuzz::Compile(expression);
    bool const isFound = compiled != nullptr && !text.empty() &&
                         Vorlane::SearchExpression(compiled.get(), text.c_str(), text.size());
    Substrings substrings;
    for (int slot = 0; isFound && slot < Vorlane::groupSlots; ++slot) {
        char const* const begin = compiled->m_groupStart[slot];
        char const* const end = compiled->m_groupEnd[slot];
        if (begin == nullptr || begin == end)
            break;
        substrings.emplace_back(begin - text.c_str(), CString(begin, static_cast<int>(end - begin)));
    }
    return substrings;
}

void CheckSubstrings(Vorlane::RegExpression const& found, Substrings const& expected)
{
    Require(found.GetSubstringCount() == static_cast<int>(expected.size()));
    int index = 0;
    for (auto const& [start, substring] : expected) {
        Require(found.GetSubstringStart(index) == start && found.GetSubstring(index) == substring);
        ++index;
    }
}

/// Copies match and answer as the original does, which keeps what it has.
void CheckCopies(Vorlane::RegExpression const& found, Substrings const& expected, bool matches,
                 CString const& text)
{
    Vorlane::RegExpression copied(found), assigned("z+", true);
    Require(assigned == "zz" && assigned != "az");
    assigned = copied;
    Vorlane::RegExpression const& self = assigned;
    assigned = self;
    CheckSubstrings(copied, expected);
    CheckSubstrings(assigned, expected);
    std::unique_ptr<Vorlane::Pattern<CString>> const pattern(found.Copy());
    CString const whole = copied.GetSubstring(0), before(whole, whole.GetLength()), other = "z" + text;
    Require(copied.Match(other, false) == (*pattern == other));
    Require(whole == before);
    Require((assigned == text) == matches);
    if (!text.IsEmpty())
        CheckSubstrings(assigned, expected);
    CheckSubstrings(found, expected);
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
    Substrings const substrings = FindSubstrings(Adjusted(expression), text);
    Require(matches == (!substrings.empty() || (text.empty() && Adjusted(expression) == ".*")));
    CheckSubstrings(found, substrings);
    CheckCopies(found, substrings, matches, ToText(text));
    bool const exact = found.Match(ToText(text), true);
    Require(!exact || matches);
    if (expression.size() <= 60 && text.size() <= 300)
        VorlaneFuzz::CheckExpression(Adjusted(expression), {text}, maximumSteps);
    return 0;
}
