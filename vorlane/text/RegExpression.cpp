#include "vorlane/text/Pattern.h"

#include "vorlane/text/RegularExpressionInternal.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace Vorlane {
namespace {

/// Up to this length a match is written into the storage of the one before it.
constexpr int reusedLength = 256;

/// Copies 1 to 16 bytes, first and last ones, which may overlap: less than the price of a call.
void CopyShort(char* target, char const* source, std::size_t length)
{
    if (length >= 8) {
        std::memcpy(target, source, 8);
        std::memcpy(target + length - 8, source + length - 8, 8);
    } else if (length >= 4) {
        std::memcpy(target, source, 4);
        std::memcpy(target + length - 4, source + length - 4, 4);
    } else {
        target[0] = source[0];
        target[length / 2] = source[length / 2];
        target[length - 1] = source[length - 1];
    }
}

void Assign(CString& target, char const* begin, int length)
{
    if (length > reusedLength || target.GetLength() > reusedLength) {
        target = CString(begin, length);
        return;
    }
    std::memcpy(target.GetBuffer(length), begin, static_cast<std::size_t>(length));
    target.ReleaseBuffer(length);
}

} // namespace

RegExpression::RegExpression(CString const& expression, bool exactMatch)
    : Pattern<CString>(exactMatch), m_expression(expression)
{
    m_expression.TrimLeft().TrimRight();
    if (m_expression[0] == '*')
        m_expression = "." + m_expression;
}

RegExpression::RegExpression(RegExpression const& other)
    : Pattern<CString>(other), m_expression(other.m_expression)
{
    CopySubstrings(other);
}

RegExpression& RegExpression::operator=(RegExpression const& other)
{
    if (this == &other)
        return *this;
    CopySubstrings(other);
    Pattern<CString>::operator=(other);
    m_expression = other.m_expression;
    ReleaseExpression(m_compiled);
    m_compiled = nullptr;
    return *this;
}

void RegExpression::CopySubstrings(RegExpression const& other)
{
    m_substringCount = 0;
    m_longMatch = other.m_longMatch;
    std::copy(std::begin(other.m_shortMatch), std::end(other.m_shortMatch), m_shortMatch);
    m_substringCount = other.m_substringCount;
    std::copy(std::begin(other.m_substringStarts), std::end(other.m_substringStarts), m_substringStarts);
    std::copy(std::begin(other.m_substringLengths), std::end(other.m_substringLengths), m_substringLengths);
}

RegExpression::~RegExpression()
{
    ReleaseExpression(m_compiled);
}

Pattern<CString>* RegExpression::Copy() const
{
    return AfxWithMemoryException([this] { return new RegExpression(*this); });
}

bool RegExpression::Match(CString const& text, bool exact)
{
    if (text.IsEmpty() && m_expression == ".*")
        return true;
    return AfxWithMemoryException([&] {
        if (m_compiled == nullptr)
            m_compiled = CompileExpression(m_expression);
        if (m_compiled == nullptr)
            return false;
        m_substringCount = 0;
        if (!text.IsEmpty() && SearchExpression(m_compiled, text, static_cast<std::size_t>(text.GetLength())))
            StoreSubstrings(text);
        if (m_substringCount == 0)
            return false;
        char const* const begin = text;
        return !exact || (m_compiled->m_groupStart[0] == begin && *m_compiled->m_groupEnd[0] == 0);
    });
}

/// Takes the spans up to the first that is unset or empty.
void RegExpression::StoreSubstrings(char const* text)
{
    int count = 0;
    for (; count < groupSlots; ++count) {
        char const* const begin = m_compiled->m_groupStart[count];
        char const* const end = m_compiled->m_groupEnd[count];
        if (begin == nullptr || begin >= end)
            break;
        m_substringStarts[count] = static_cast<int>(begin - text);
        m_substringLengths[count] = static_cast<int>(end - begin);
    }
    if (count > 0) {
        char const* const begin = m_compiled->m_groupStart[0];
        int const length = m_substringLengths[0];
        if (length <= shortCapacity)
            CopyShort(m_shortMatch, begin, static_cast<std::size_t>(length));
        else
            Assign(m_longMatch, begin, length);
    }
    m_substringCount = count;
}

CString RegExpression::GetSubstring(int index) const
{
    if (index < 0 || index >= m_substringCount)
        return CString();
    int const first = m_substringStarts[index] - m_substringStarts[0];
    int const length = m_substringLengths[index];
    return m_substringLengths[0] <= shortCapacity ? CString(m_shortMatch + first, length)
                                                  : m_longMatch.Mid(first, length);
}

int RegExpression::GetSubstringStart(int index) const
{
    return index >= 0 && index < m_substringCount ? m_substringStarts[index] : -1;
}

int RegExpression::GetSubstringCount() const
{
    return m_substringCount;
}

bool RegExpression::IsRegExpression(CString const& text)
{
    return text.FindOneOf("*+\\.^[]$&()") >= 0;
}

} // namespace Vorlane
