/// \file
/// The search for the leftmost match, in layers:
///
/// 1. If the text is long, a literal that each match contains is looked for: without it there is nothing to
///    find. If each match ends with the text, the last bytes may show that there is none.
/// 2. Scanners lead to the positions where a match can begin: a literal, which may be the whole expression, a
///    set of a few intervals, or the first three bytes (RegularExpressionScanners.cpp).
/// 3. From such a position the one-pass automaton finds a match that begins just there and its groups, or
///    fails. Where it cannot be used, or the match is long, the forward automaton finds the end instead.
///    Where failures have cost more than the way they led, it goes on from anywhere at once, and the backward
///    automaton finds the begin for the end that it comes to. Either way each byte is read a bounded number
///    of times.
/// 4. If there are groups that are not known by then, one walk over the match finds them: that of the
///    one-pass automaton, or, where it cannot be used, that of the backward automaton.
///
/// Nothing recurses, so the depth of the stack depends on nothing.
/// Tested by tests/text/ExpressionMatcherTest.cpp.

#include "vorlane/text/RegularExpressionInternal.h"

#include "vorlane/text/RegularExpressionSearchInternal.h"

#include <algorithm>
#include <cstring>

namespace Vorlane {
namespace {

/// A shorter text is searched without looking for the required literal first.
constexpr std::size_t longText = 64;

/// Failures may read this many bytes for each byte that they lead on, and this many more.
constexpr std::ptrdiff_t vainBytes = 2;
constexpr std::ptrdiff_t vainBytesAtFirst = 64;

bool IsLong(char const* at, char const* end)
{
    return static_cast<std::size_t>(end - at) >= longText;
}

/// So often an expression without groups is tried by the one-pass automaton.
constexpr unsigned int triesInOnePass = 32;

constexpr int firstBranch = 1;

/// The longest literal on the chain of nodes from `node`, groups that have just one branch included; among
/// those of equal length the last.
void FindRequired(unsigned char const* code, int node, char const*& longest, std::size_t& longestLength)
{
    while (node != 0) {
        int const literalNode = code[node] == OpPlus ? node + nodeHeaderLength : node;
        if (code[literalNode] == OpExactly) {
            char const* const literal = reinterpret_cast<char const*>(code + literalNode + nodeHeaderLength);
            std::size_t const length = std::strlen(literal);
            if (length >= longestLength) {
                longest = literal;
                longestLength = length;
            }
        }
        int const next = NextNode(code, node);
        bool const isOpen = code[node] > OpOpen && code[node] < OpClose;
        // Behind OpOpen stands a branch; where it is the only one, what it holds is on the way.
        node = isOpen && code[NextNode(code, next)] != OpBranch ? next + nodeHeaderLength : next;
    }
}

} // namespace

ExpressionSearch::ExpressionSearch(CompiledExpression const& compiled) : m_program(compiled)
{
    Reach reach(m_program);
    AddReach(m_program, m_program.start, reach);
    m_mayBeEmpty = reach.accepts;
    if (m_mayBeEmpty)
        m_begins.Invert();
    else
        m_begins = BytesOf(m_program, reach);

    unsigned char const* const code = compiled.Code();
    if (code[NextNode(code, firstBranch)] != OpBranch) {
        int last = firstBranch + nodeHeaderLength;
        for (int node = last; code[node] != OpEnd; node = NextNode(code, node))
            last = node;
        m_endsText = code[last] == OpEndText;
    }
}

ForwardAutomaton& ExpressionSearch::Forward()
{
    if (m_forward == nullptr)
        m_forward = std::make_unique<ForwardAutomaton>(m_program);
    return *m_forward;
}

BackwardAutomaton& ExpressionSearch::Backward()
{
    if (m_backward == nullptr)
        m_backward = std::make_unique<BackwardAutomaton>(m_program);
    return *m_backward;
}

void ExpressionSearch::FindLiterals(CompiledExpression const& compiled)
{
    std::string prefix;
    bool isPlain = true;
    InstructionIndex index = m_program.start;
    for (;; index = m_program.instructions[index].next) {
        Instruction const& instruction = m_program.instructions[index];
        if (instruction.kind == Instruction::character)
            prefix += static_cast<char>(instruction.operand);
        else if (instruction.kind == Instruction::accept || instruction.kind == Instruction::set ||
                 instruction.kind == Instruction::fork)
            break;
        else
            isPlain = false;
    }
    m_isLiteral = isPlain && !prefix.empty() && m_program.instructions[index].kind == Instruction::accept;
    m_prefix = LiteralFinder(prefix.data(), prefix.size());

    unsigned char const* const code = compiled.Code();
    if (code[NextNode(code, firstBranch)] == OpBranch)
        return;
    char const* required = nullptr;
    std::size_t length = 0;
    FindRequired(code, firstBranch + nodeHeaderLength, required, length);
    if (length > 0 && length >= prefix.size() && prefix.compare(0, prefix.size(), required, length) != 0)
        m_required = LiteralFinder(required, length);
}

void ExpressionSearch::PrepareForLongTexts(CompiledExpression const& compiled)
{
    // In usual text a set that is rarer than this is found quicker by itself than by three bytes.
    constexpr int rareSet = 600;
    FindLiterals(compiled);
    ByteSet beginsOrEnd = m_begins;
    beginsOrEnd.Add(0);
    int frequency = 0;
    for (unsigned int c = 0; c < 256; ++c)
        if (m_begins.Has(static_cast<unsigned char>(c)))
            frequency += ByteFrequency(static_cast<unsigned char>(c));
    if (m_mayBeEmpty)
        m_skip = Skip::none;
    else if (m_prefix.Length() > 0)
        m_skip = Skip::literal;
    else if (frequency <= rareSet && m_intervals.Prepare(beginsOrEnd))
        m_skip = Skip::intervals;
    else if (m_filter.Prepare(m_program))
        m_skip = Skip::prefix;
    else
        m_skip = Skip::none;
}

/// The next position from `at` on where a match can begin, or null. A zero byte on the way may be overlooked.
char const* ExpressionSearch::NextCandidate(char const* at, char const* end, bool& gaveUp) const
{
    bool const isLong = IsLong(at, end);
    if (isLong && m_skip == Skip::literal)
        return m_prefix.Find(at, end, gaveUp);
    if (isLong && m_skip == Skip::intervals)
        at = m_intervals.Find(at, end);
    else if (isLong && m_skip == Skip::prefix)
        at = m_filter.Find(at, end);
    while (!m_begins.Has(static_cast<unsigned char>(*at)) && *at != 0)
        ++at;
    return m_begins.Has(static_cast<unsigned char>(*at)) ? at : nullptr;
}

/// Looks for a match that begins at `from`.
void ExpressionSearch::Try(char const* from, char const* text, char const* end, FoundMatch& match,
                           char const*& last)
{
    match.begin = from;
    if (!m_onePass)
        m_onePass.emplace(m_program);
    // Without groups the forward automaton is a little quicker, once it is built.
    bool const isForOnePass = m_program.groupCount > 0 || m_tries < triesInOnePass;
    if (isForOnePass && m_onePass->IsUsable()) {
        ++m_tries;
        OnePassAutomaton::Outcome const outcome = m_onePass->Try(from, text, match.end, last, match.groups);
        match.hasGroups = outcome == OnePassAutomaton::Outcome::matches;
        if (match.hasGroups || outcome == OnePassAutomaton::Outcome::fails)
            return;
    }
    match.end = Forward().Run(from, text, end, true, last);
}

bool ExpressionSearch::FindAnywhere(char const* text, char const* from, char const* end, FoundMatch& match)
{
    char const* last = nullptr;
    match.end = Forward().Run(from, text, end, false, last);
    if (match.end == nullptr)
        return false;
    match.begin = Backward().FindBegin(text, from, match.end, last);
    return true;
}

bool ExpressionSearch::Find(char const* text, char const* end, bool anchored, FoundMatch& match)
{
    std::ptrdiff_t vain = -vainBytesAtFirst;
    char const* at = text;
    for (;;) {
        bool gaveUp = false;
        // In a short text the next position is mostly one already.
        bool const isHere = anchored || (!IsLong(at, end) && m_begins.Has(static_cast<unsigned char>(*at)));
        char const* const candidate = isHere ? at : NextCandidate(at, end, gaveUp);
        if (candidate == nullptr ||
            (candidate != at && std::memchr(at, 0, static_cast<std::size_t>(candidate - at)) != nullptr))
            return false;
        if (gaveUp)
            return FindAnywhere(text, candidate, end, match);
        if (m_isLiteral && IsLong(at, end)) {
            match.begin = candidate;
            match.end = candidate + m_prefix.Length();
            return true;
        }
        char const* last = nullptr;
        Try(candidate, text, end, match, last);
        if (match.end != nullptr)
            return true;
        if (anchored || *candidate == 0)
            return false;
        vain += last - candidate + 1;
        at = candidate + 1;
        if (vain > vainBytes * (at - text))
            return FindAnywhere(text, at, end, match);
    }
}

void ExpressionSearch::FindGroups(char const* text, FoundMatch& match)
{
    if (!match.hasGroups && m_onePass && m_onePass->IsUsable())
        match.hasGroups = m_onePass->FindGroups(text, match.begin, match.end, match.groups);
    if (!match.hasGroups)
        Backward().FindGroups(text, match.begin, match.end, match.groups);
}

/// Whether the last characters of a text show that no match ends there.
bool ExpressionSearch::EndsInVain(char const* text, char const* end)
{
    constexpr std::ptrdiff_t look = 256;
    char const* const low = end - std::min(look, end - text);
    char const* last = nullptr;
    return Backward().FindBegin(text, low, end, last) == nullptr && last > low;
}

bool ExpressionSearch::Run(CompiledExpression& compiled, char const* text, std::size_t length)
{
    char const* end = text + length;
    compiled.m_groupStart[0] = compiled.m_groupEnd[0] = nullptr;
    auto const groupCount = static_cast<std::size_t>(m_program.groupCount);
    if (groupCount > 0) { // without groups their slots have never been set
        std::fill_n(compiled.m_groupStart, groupSlots, nullptr);
        std::fill_n(compiled.m_groupEnd, groupSlots, nullptr);
    }
    FoundMatch match;
    if (length >= longText) {
        if (m_skip == Skip::undecided)
            PrepareForLongTexts(compiled);
        bool gaveUp = false;
        if (m_required.Length() > 0 && m_required.Find(text, end, gaveUp) == nullptr)
            return false;
        if (m_endsText) {
            if (void const* const zero = std::memchr(text, 0, length))
                end = static_cast<char const*>(zero);
            if (EndsInVain(text, end))
                return false;
        }
    }
    if (!Find(text, end, compiled.m_anchored, match))
        return false;
    compiled.m_groupStart[0] = match.begin;
    compiled.m_groupEnd[0] = match.end;
    if (groupCount == 0 || match.begin == match.end)
        return true;
    FindGroups(text, match);
    for (std::size_t group = 1; group <= groupCount; ++group) {
        compiled.m_groupStart[group] = match.groups[2 * group - 2];
        compiled.m_groupEnd[group] = match.groups[2 * group - 1];
    }
    return true;
}

bool SearchExpression(CompiledExpression* compiled, char const* text, std::size_t length)
{
    if (compiled == nullptr || text == nullptr || *compiled->Code() != compiledCheckValue)
        return false;
    try {
        if (compiled->m_search == nullptr)
            compiled->m_search = new ExpressionSearch(*compiled);
        return compiled->m_search->Run(*compiled, text, length);
    } catch (...) {
        // A table may be half changed; the next search builds all anew.
        delete compiled->m_search;
        compiled->m_search = nullptr;
        throw;
    }
}

} // namespace Vorlane
