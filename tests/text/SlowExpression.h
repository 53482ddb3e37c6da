#ifndef VORLANE_TESTS_TEXT_SLOWEXPRESSION_H
#define VORLANE_TESTS_TEXT_SLOWEXPRESSION_H

#include <array>
#include <bitset>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace VorlaneTest {

/// The obvious matcher: a tree straight from the grammar, and backtracking by recursion. It takes time that
/// is exponential in the text where the expression is unkind, so it counts its steps.
class SlowExpression
{
public:
    /// The bounds of the match and of groups 1 to 9; -1 where unset.
    using Spans = std::array<std::pair<int, int>, 10>;
    enum Result
    {
        matches,
        doesNotMatch,
        tooSlow
    };

    explicit SlowExpression(std::string expression);

    bool IsValid() const { return m_isValid; }

    Result Search(std::string const& text, Spans& spans, long maximumSteps = 100000);

private:
    struct Piece;
    using Branch = std::vector<Piece>;
    struct Piece
    {
        char kind;           ///< 'c' for a set of characters, '(' ^ $ < >
        char quantifier = 0; ///< * + ?
        bool hasWidth = false;
        std::bitset<256> members{};
        int group = 0;
        std::vector<Branch> branches{};
    };
    using Continuation = std::function<bool(int)>;

    std::vector<Branch> ParseBranches();
    Piece ParsePiece();
    Piece ParseAtom();
    void ParseSet(Piece& piece);
    static bool HasWidth(std::vector<Branch> const& branches);

    bool MatchBranch(Branch const& branch, std::size_t index, int at, Continuation const& then);
    bool MatchRepeated(Piece const& piece, int least, bool again, int at, Continuation const& then);
    bool MatchOnce(Piece const& piece, int at, Continuation const& then);
    bool IsWordAt(int at) const;

    char Peek() const { return m_at < m_expression.size() ? m_expression[m_at] : '\0'; }

    std::string m_expression;
    std::size_t m_at = 0;
    int m_groups = 0;
    bool m_isValid = true;
    std::vector<Branch> m_branches;
    std::string m_text;
    Spans* m_spans = nullptr;
    long m_steps = 0;
};

} // namespace VorlaneTest

#endif
