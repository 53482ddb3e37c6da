#include "tests/text/SlowExpression.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace VorlaneTest {

SlowExpression::SlowExpression(std::string expression) : m_expression(expression.c_str())
{
    m_branches = ParseBranches();
    m_isValid = m_isValid && m_at == m_expression.size() && m_groups <= 9;
}

std::vector<SlowExpression::Branch> SlowExpression::ParseBranches()
{
    std::vector<Branch> branches(1);
    while (m_isValid && m_at < m_expression.size() && Peek() != ')') {
        if (Peek() == '|' || Peek() == '\n') {
            ++m_at;
            branches.emplace_back();
        } else {
            branches.back().push_back(ParsePiece());
        }
    }
    return branches;
}

SlowExpression::Piece SlowExpression::ParsePiece()
{
    Piece piece = ParseAtom();
    char const quantifier = Peek();
    if (quantifier == '*' || quantifier == '+' || quantifier == '?') {
        ++m_at;
        piece.quantifier = quantifier;
        m_isValid = m_isValid && (piece.hasWidth || quantifier == '?') &&
                    (Peek() == '\0' || std::strchr("*+?", Peek()) == nullptr);
        piece.hasWidth = quantifier == '+';
    }
    return piece;
}

SlowExpression::Piece SlowExpression::ParseAtom()
{
    char const c = m_expression[m_at++];
    Piece piece{c};
    if (c == '(') {
        piece.group = ++m_groups;
        piece.branches = ParseBranches();
        piece.hasWidth = HasWidth(piece.branches);
        m_isValid = m_isValid && Peek() == ')' && m_groups <= 9;
        ++m_at;
    } else if (c == '\\' && (Peek() == '<' || Peek() == '>')) {
        piece.kind = m_expression[m_at++];
    } else if (c != '^' && c != '$') {
        piece.kind = 'c';
        piece.hasWidth = true;
        if (c == '.')
            piece.members.set();
        else if (c == '[')
            ParseSet(piece);
        else if (c != '\\')
            piece.members.set(static_cast<unsigned char>(c));
        else if (Peek() != '\0')
            piece.members.set(static_cast<unsigned char>(m_expression[m_at++]));
        else
            m_isValid = false;
        m_isValid = m_isValid && std::strchr("*+?", c) == nullptr;
    }
    return piece;
}

void SlowExpression::ParseSet(Piece& piece)
{
    bool const negated = Peek() == '^';
    m_at += negated;
    std::string const rest = m_expression.substr(std::min(m_at, m_expression.size()));
    std::size_t const close = rest.find(']', rest.empty() || rest[0] != ']' ? 0 : 1);
    m_isValid = m_isValid && close != std::string::npos;
    if (!m_isValid)
        return;
    m_at += close + 1;
    for (std::size_t i = 0; i < close; ++i) {
        auto const c = static_cast<unsigned char>(rest[i]);
        if (c != '-' || i == 0 || i + 1 == close) {
            piece.members.set(c);
        } else {
            auto const low = static_cast<unsigned char>(rest[i - 1]);
            auto const high = static_cast<unsigned char>(rest[++i]);
            m_isValid = m_isValid && low <= high;
            for (int member = low; member <= high; ++member)
                piece.members.set(static_cast<std::size_t>(member));
        }
    }
    if (negated)
        piece.members.flip();
}

bool SlowExpression::HasWidth(std::vector<Branch> const& branches)
{
    return std::all_of(branches.begin(), branches.end(), [](Branch const& branch) {
        return std::any_of(branch.begin(), branch.end(), [](Piece const& piece) { return piece.hasWidth; });
    });
}

SlowExpression::Result SlowExpression::Search(std::string const& text, Spans& spans, long maximumSteps)
{
    m_text = text.c_str();
    m_spans = &spans;
    m_steps = maximumSteps;
    for (int begin = 0; begin <= static_cast<int>(m_text.size()); ++begin) {
        spans.fill({-1, -1});
        for (Branch const& branch : m_branches) {
            bool const found = MatchBranch(branch, 0, begin, [&](int end) {
                spans[0] = {begin, end};
                return true;
            });
            if (m_steps < 0)
                return tooSlow;
            if (found)
                return matches;
        }
    }
    return doesNotMatch;
}

bool SlowExpression::MatchBranch(Branch const& branch, std::size_t index, int at, Continuation const& then)
{
    if (index == branch.size())
        return then(at);
    Piece const& piece = branch[index];
    int const least = piece.quantifier == '*' || piece.quantifier == '?' ? 0 : 1;
    bool const again = piece.quantifier == '*' || piece.quantifier == '+';
    auto const rest = [&](int next) {
        return MatchBranch(branch, index + 1, next, then);
    };
    return MatchRepeated(piece, least, again, at, rest);
}

bool SlowExpression::MatchRepeated(Piece const& piece, int least, bool again, int at,
                                   Continuation const& then)
{
    if (--m_steps < 0)
        return false;
    auto const more = [&](int next) {
        return again ? MatchRepeated(piece, 0, true, next, then) : then(next);
    };
    return MatchOnce(piece, at, more) || (least == 0 && then(at));
}

bool SlowExpression::MatchOnce(Piece const& piece, int at, Continuation const& then)
{
    int const length = static_cast<int>(m_text.size());
    switch (piece.kind) {
    case 'c':
        return at < length &&
               piece.members[static_cast<unsigned char>(m_text[static_cast<std::size_t>(at)])] &&
               then(at + 1);
    case '^':
        return at == 0 && then(at);
    case '$':
        return at == length && then(at);
    case '<':
        return IsWordAt(at) && !IsWordAt(at - 1) && then(at);
    case '>':
        return !IsWordAt(at) && then(at);
    default: {
        auto const close = [&](int end) {
            auto const before = (*m_spans)[static_cast<std::size_t>(piece.group)];
            (*m_spans)[static_cast<std::size_t>(piece.group)] = {at, end};
            if (then(end))
                return true;
            (*m_spans)[static_cast<std::size_t>(piece.group)] = before;
            return false;
        };
        return std::any_of(piece.branches.begin(), piece.branches.end(),
                           [&](Branch const& branch) { return MatchBranch(branch, 0, at, close); });
    }
    }
}

bool SlowExpression::IsWordAt(int at) const
{
    if (at < 0 || at >= static_cast<int>(m_text.size()))
        return false;
    auto const c = static_cast<unsigned char>(m_text[static_cast<std::size_t>(at)]);
    return c < 128 && (std::isalnum(c) != 0 || c == '_');
}

} // namespace VorlaneTest
