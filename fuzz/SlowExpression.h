#ifndef VORLANE_FUZZ_SLOWEXPRESSION_H
#define VORLANE_FUZZ_SLOWEXPRESSION_H

#include <array>
#include <functional>
#include <string>
#include <utility>

namespace VorlaneFuzz {

/// The obvious matcher: backtracking by recursion, put together as the grammar says. It takes time that is
/// exponential in the text where the expression is unkind, so it counts its steps.
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

    explicit SlowExpression(std::string const& expression);
    SlowExpression(SlowExpression const&) = delete;

    bool IsValid() const { return m_isValid; }
    Result Search(std::string const& text, Spans& spans, long maximumSteps);

private:
    /// Tries one way after the other from a position, until one suits what comes then.
    using Then = std::function<bool(int)>;
    using Part = std::function<bool(int, Then const&)>;

    Part Alternatives();
    Part Branch();
    Part Piece();
    Part Atom();
    Part Group();
    Part Set();
    Part Test(std::function<bool(int)> const& holds, int width);
    bool IsNext(char const* characters) const;
    bool IsWordAt(int at) const;

    std::string m_expression;
    std::size_t m_at = 0;
    int m_groups = 0;
    bool m_isValid = true;
    bool m_hasWidth = false; ///< whether what was read last takes at least one character
    Part m_whole;
    char const* m_text = nullptr;
    Spans* m_spans = nullptr;
    long m_steps = 0;
};

} // namespace VorlaneFuzz

#endif
