#include "vorlane/text/Pattern.h"

#include "vorlane/text/RegularExpressionInternal.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace Vorlane {
namespace {

/// Up to this length a match is written into the storage of the one before it.
constexpr int reusedLength = 256;

/// Up to this length a text lies in its object, and is copied for less than a choice would cost.
constexpr int shortLength = 15;

void Assign(CString& target, char const* begin, int length)
{
    if (length <= shortLength || length > reusedLength || target.GetLength() > reusedLength) {
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
    m_kept = other.m_kept;
    m_keptFrom = other.m_keptFrom;
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
void RegExpression::StoreSubstrings(CString const& text)
{
    char const* const first = text;
    int count = 0;
    for (; count < groupSlots; ++count) {
        char const* const begin = m_compiled->m_groupStart[count];
        char const* const end = m_compiled->m_groupEnd[count];
        if (begin == nullptr || begin >= end)
            break;
        m_substringStarts[count] = static_cast<int>(begin - first);
        m_substringLengths[count] = static_cast<int>(end - begin);
    }
    if (count > 0 && text.GetLength() <= shortLength) {
        m_kept = text;
        m_keptFrom = 0;
    } else if (count > 0) {
        m_keptFrom = m_substringStarts[0];
        Assign(m_kept, m_compiled->m_groupStart[0], m_substringLengths[0]);
    }
    m_substringCount = count;
}

CString RegExpression::GetSubstring(int index) const
{
    if (index < 0 || index >= m_substringCount)
        return CString();
    return m_kept.Mid(m_substringStarts[index] - m_keptFrom, m_substringLengths[index]);
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
