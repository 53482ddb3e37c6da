#ifndef VORLANE_TEXT_PATTERN_H
#define VORLANE_TEXT_PATTERN_H

/// \file
/// Tests that a text passes or fails: regular expressions, which also tell what their groups matched, and
/// ranges of integers written as text. Nothing here locks or has state of its own outside its objects:
/// distinct objects may be used on distinct threads, one object only by one thread at a time, since Match
/// changes it.

#include "vorlane/Export.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include <cstdint>

namespace Vorlane {

struct CompiledExpression;

/// The base of all patterns over texts of type T.
template <typename T>
class VORLANE_EXPORT Pattern
{
public:
    /// `exactMatch` is what the operators hand to Match.
    explicit Pattern(bool exactMatch = true) : m_exactMatch(exactMatch) {}

    Pattern(Pattern const&) = default;
    Pattern& operator=(Pattern const&) = default;
    virtual ~Pattern();

    /// Whether `text` passes, or does not: Match with the `exactMatch` of the constructor.
    bool operator==(T const& text) { return Match(text, m_exactMatch); }
    bool operator!=(T const& text) { return !(*this == text); }

    /// A copy on the heap, which belongs to the caller.
    virtual Pattern<T>* Copy() const = 0;

    /// Whether `text` passes; `exact` asks that all of it does. The body given here is true for every text.
    virtual bool Match(T const& text, bool exact) = 0;

protected:
    bool m_exactMatch; ///< what the operators hand to Match
};

template <typename T>
Pattern<T>::~Pattern() = default;

template <typename T>
bool Pattern<T>::Match(T const&, bool)
{
    return true;
}

extern template class Pattern<CString>;

/// A regular expression. docs/expressions.md lists the dialect; characters are bytes, classified without the
/// locale, and a zero byte ends an expression as well as a text.
///
/// The leftmost match counts, and there the first in the order that a backtracking matcher tries: the
/// leftmost alternative, the greediest repetition. An empty match counts as none.
///
/// An expression is compiled by the first Match that needs it. That takes time linear in its length, and a
/// search takes time linear in the length of the text, whatever the expression. The tables of a search grow
/// with what it meets, to some 14 MB, or to more for an expression of thousands of characters, and stay with
/// the object until it is assigned to or destroyed.
///
/// A search follows all ways to match at once: K. Thompson, "Regular expression search algorithm",
/// Communications of the ACM 11 (1968).
class VORLANE_EXPORT RegExpression : public Pattern<CString>
{
public:
    /// The expression loses white space at both ends, also where a backslash stands before it; one that then
    /// begins with '*' gets a '.' in front, so that "*abc" means ".*abc". Nothing is validated here.
    RegExpression(CString const& expression, bool exactMatch);

    /// Copies keep the substrings, and compile for themselves.
    RegExpression(RegExpression const& other);
    RegExpression& operator=(RegExpression const& other);
    ~RegExpression() override;

    Pattern<CString>* Copy() const override;

    /// Whether the expression matches somewhere in `text`, or, where `exact` is set, whether the leftmost
    /// match is the whole of it. The substrings become those of the match, also of one that is not exact, and
    /// none where there is none. Exceptions to that: an expression that does not compile gives false, and
    /// ".*" true for the empty text, and both leave the substrings as they were. Any other expression gives
    /// false for the empty text. Raises CMemoryException; the substrings are then none, or those from before
    /// if the expression was yet to be compiled.
    bool Match(CString const& text, bool exact) override;

    /// What the last Match found: the whole match at 0, group i at i. An empty text for an index outside.
    virtual CString GetSubstring(int index) const;

    /// Where substring `index` begins in the text of the last Match; -1 for an index outside. With it a
    /// caller goes from match to match through `text.Mid(GetSubstringStart(0) +
    /// GetSubstring(0).GetLength())`, which copies nothing.
    int GetSubstringStart(int index) const;

    /// The number of substrings. The list ends before the first group that is empty or took no part, so the
    /// groups behind such a one cannot be asked for.
    virtual int GetSubstringCount() const;

    /// Whether `text` holds one of the characters * + \ . ^ [ ] $ & ( ). Says nothing of validity; '?' and
    /// '|' are not among them.
    static bool IsRegExpression(CString const& text);

private:
    void CopySubstrings(RegExpression const& other);
    void StoreSubstrings(CString const& text);

    CString m_expression;
    CString m_kept;     ///< what the last Match found, or the whole text if that is short
    int m_keptFrom = 0; ///< where it begins in that text
    CompiledExpression* m_compiled = nullptr;
    int m_substringCount = 0;
    int m_substringStarts[10] = {}; ///< in the text of the last Match
    int m_substringLengths[10] = {};
};

/// A range of 32-bit integers, both ends included.
class VORLANE_EXPORT RegNumber : public Pattern<CString>
{
public:
    /// "1-5" is the range from 1 to 5, "-5--2" that from -5 to -2, "7" that of 7 alone, and an empty text
    /// that from 0 to 1. The text splits at its first '-' that is neither its first character nor, if none
    /// stands before it, its last; numbers are read as Match reads them. Nothing is validated.
    explicit RegNumber(CString const& text);

    RegNumber(RegNumber const&) = default;
    RegNumber& operator=(RegNumber const&) = default;
    ~RegNumber() override;

    Pattern<CString>* Copy() const override;

    /// Reads an integer at the start of `text`: white space, a sign, digits, and anything after them; 0 where
    /// there is none, and the nearest 32-bit number for one beyond. True if it lies in the range, or, where
    /// `exact` is set, equals both ends.
    bool Match(CString const& text, bool exact) override;

    /// Whether `text` is two numbers of digits, each with at most one sign in front, parted by a '-'. A sign
    /// alone passes as a number; a number alone is no range.
    static bool IsRegNumber(CString const& text);

private:
    std::int32_t m_maximum;
    std::int32_t m_minimum;
};

} // namespace Vorlane

#endif
