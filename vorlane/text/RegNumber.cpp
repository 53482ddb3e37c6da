#include "vorlane/text/Pattern.h"

#include "vorlane/text/NumberScanningInternal.h"

#include <algorithm>
#include <cstdint>

namespace Vorlane {
namespace {

/// The integer at the start of a text; a value beyond 32 bits becomes the nearest bound.
std::int32_t ReadInteger(CString const& text)
{
    char const* const begin = text;
    return NumberScanning::ScanInteger(begin, begin + text.GetLength()).value;
}

/// The index of the '-' between two numbers, or -1 for none.
int FindSplit(CString const& text)
{
    int split = text.Find('-', 0);
    if (split == 0)
        split = text.Find('-', 1);
    return split < text.GetLength() - 1 ? split : -1;
}

/// Digits with at most one sign in front; a sign alone passes.
bool IsInteger(CString const& text)
{
    int const signs = text[0] == '+' || text[0] == '-';
    char const* const begin = text;
    return std::all_of(begin + signs, begin + text.GetLength(), NumberScanning::IsDigit);
}

} // namespace

RegNumber::RegNumber(CString const& text) : Pattern<CString>(false), m_maximum(1), m_minimum(0)
{
    if (text.IsEmpty())
        return;
    int const split = FindSplit(text);
    m_minimum = ReadInteger(split < 0 ? text : text.Left(split));
    m_maximum = ReadInteger(split < 0 ? text : text.Mid(split + 1));
}

RegNumber::~RegNumber() = default;

Pattern<CString>* RegNumber::Copy() const
{
    return AfxWithMemoryException([this] { return new RegNumber(*this); });
}

bool RegNumber::Match(CString const& text, bool exact)
{
    std::int32_t const number = ReadInteger(text);
    return exact ? number == m_minimum && number == m_maximum : m_minimum <= number && number <= m_maximum;
}

bool RegNumber::IsRegNumber(CString const& text)
{
    int const split = FindSplit(text);
    return split > 0 && IsInteger(text.Left(split)) && IsInteger(text.Mid(split + 1));
}

} // namespace Vorlane
