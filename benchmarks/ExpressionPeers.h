#ifndef VORLANE_BENCHMARKS_EXPRESSIONPEERS_H
#define VORLANE_BENCHMARKS_EXPRESSIONPEERS_H

// The engines that expressions are measured beside, each behind the same few calls. In all of them '.' takes
// a line feed too, as it does here. A failure that is no mismatch (a limit, a stack) is an exception.

#include "vorlane/text/Pattern.h"

#include <cstddef>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#ifdef VORLANE_HAVE_BOOST_REGEX
#include <boost/regex.hpp>
#endif
#ifdef VORLANE_HAVE_RE2
#include <re2/re2.h>
#endif
#ifdef VORLANE_HAVE_PCRE2
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#endif

namespace Peers {

/// A text in the form that an engine takes; made before the clock runs.
struct Text
{
    explicit Text(std::string const& characters)
        : view(characters), native(characters.data(), static_cast<int>(characters.size()))
    {}

    std::string_view view;
    CString native;
};

class Vorlane
{
public:
    static constexpr char const* name = "Vorlane";

    explicit Vorlane(std::string const& expression) : m_expression(expression.c_str(), false) {}

    std::size_t CountAll(Text const& text)
    {
        std::size_t count = 0;
        CString rest = text.native;
        for (; m_expression.Match(rest, false); ++count)
            rest = rest.Mid(m_expression.GetSubstringStart(0) + m_expression.GetSubstring(0).GetLength());
        return count;
    }

    bool Search(Text const& text) { return m_expression.Match(text.native, false); }
    bool FullMatch(Text const& text) { return m_expression.Match(text.native, true); }

private:
    ::Vorlane::RegExpression m_expression;
};

class Standard
{
public:
    static constexpr char const* name = "std";

    explicit Standard(std::string const& expression) : m_expression(expression, std::regex::optimize) {}

    std::size_t CountAll(Text const& text)
    {
        std::size_t count = 0;
        std::cregex_iterator at(text.view.data(), text.view.data() + text.view.size(), m_expression);
        for (; at != std::cregex_iterator(); ++at)
            ++count;
        return count;
    }

    bool Search(Text const& text)
    {
        return std::regex_search(text.view.data(), text.view.data() + text.view.size(), m_match,
                                 m_expression);
    }
    bool FullMatch(Text const& text)
    {
        return std::regex_match(text.view.data(), text.view.data() + text.view.size(), m_match, m_expression);
    }

private:
    std::regex m_expression;
    std::cmatch m_match;
};

#ifdef VORLANE_HAVE_BOOST_REGEX
class Boost
{
public:
    static constexpr char const* name = "Boost";

    explicit Boost(std::string const& expression) : m_expression(expression) {}

    std::size_t CountAll(Text const& text)
    {
        std::size_t count = 0;
        boost::cregex_iterator at(text.view.data(), text.view.data() + text.view.size(), m_expression);
        for (; at != boost::cregex_iterator(); ++at)
            ++count;
        return count;
    }

    bool Search(Text const& text)
    {
        return boost::regex_search(text.view.data(), text.view.data() + text.view.size(), m_match,
                                   m_expression);
    }
    bool FullMatch(Text const& text)
    {
        return boost::regex_match(text.view.data(), text.view.data() + text.view.size(), m_match,
                                  m_expression);
    }

private:
    boost::regex m_expression;
    boost::cmatch m_match;
};
#endif

#ifdef VORLANE_HAVE_RE2
/// The length of a text is known, or it is that of the text up to its first zero byte.
template <bool knowsLength>
class Re2
{
public:
    static constexpr char const* name = knowsLength ? "RE2" : "RE2-strlen";

    explicit Re2(std::string const& expression) : m_expression(expression, Options())
    {
        m_groups.resize(static_cast<std::size_t>(m_expression.NumberOfCapturingGroups()) + 1);
    }

    std::size_t CountAll(Text const& text)
    {
        std::size_t count = 0;
        re2::StringPiece found;
        for (std::size_t at = 0;
             m_expression.Match(Piece(text), at, text.view.size(), re2::RE2::UNANCHORED, &found, 1); ++count)
            at = static_cast<std::size_t>(found.data() + found.size() - text.view.data());
        return count;
    }

    bool Search(Text const& text) { return Match(text, re2::RE2::UNANCHORED); }
    bool FullMatch(Text const& text) { return Match(text, re2::RE2::ANCHOR_BOTH); }

private:
    static re2::RE2::Options Options()
    {
        re2::RE2::Options options(re2::RE2::Latin1);
        options.set_dot_nl(true);
        options.set_log_errors(false);
        return options;
    }
    static re2::StringPiece Piece(Text const& text)
    {
        return knowsLength ? re2::StringPiece(text.view.data(), text.view.size())
                           : re2::StringPiece(text.view.data());
    }
    bool Match(Text const& text, re2::RE2::Anchor anchor)
    {
        re2::StringPiece const piece = Piece(text);
        return m_expression.Match(piece, 0, piece.size(), anchor, m_groups.data(),
                                  static_cast<int>(m_groups.size()));
    }

    re2::RE2 m_expression;
    std::vector<re2::StringPiece> m_groups;
};
#endif

#ifdef VORLANE_HAVE_PCRE2
template <bool compiled>
class Pcre2
{
public:
    static constexpr char const* name = compiled ? "PCRE2-JIT" : "PCRE2";

    explicit Pcre2(std::string const& expression)
    {
        int error = 0;
        PCRE2_SIZE offset = 0;
        m_code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(expression.data()), expression.size(),
                               PCRE2_DOTALL, &error, &offset, nullptr);
        if (m_code == nullptr)
            throw std::runtime_error("PCRE2 does not compile " + expression);
        if (compiled)
            pcre2_jit_compile(m_code, PCRE2_JIT_COMPLETE);
        m_match = pcre2_match_data_create_from_pattern(m_code, nullptr);
    }
    ~Pcre2()
    {
        pcre2_match_data_free(m_match);
        pcre2_code_free(m_code);
    }
    Pcre2(Pcre2 const&) = delete;
    Pcre2& operator=(Pcre2 const&) = delete;

    std::size_t CountAll(Text const& text)
    {
        std::size_t count = 0;
        for (std::size_t at = 0; Match(text, at, 0); ++count)
            at = pcre2_get_ovector_pointer(m_match)[1];
        return count;
    }

    bool Search(Text const& text) { return Match(text, 0, 0); }
    bool FullMatch(Text const& text)
    {
        return Match(text, 0, 0) && pcre2_get_ovector_pointer(m_match)[0] == 0 &&
               pcre2_get_ovector_pointer(m_match)[1] == text.view.size();
    }

private:
    bool Match(Text const& text, std::size_t at, std::uint32_t options)
    {
        auto const subject = reinterpret_cast<PCRE2_SPTR>(text.view.data());
        int const result =
            compiled ? pcre2_jit_match(m_code, subject, text.view.size(), at, options, m_match, nullptr)
                     : pcre2_match(m_code, subject, text.view.size(), at, options, m_match, nullptr);
        if (result < 0 && result != PCRE2_ERROR_NOMATCH)
            throw std::runtime_error("PCRE2 gives up");
        return result >= 0;
    }

    pcre2_code* m_code = nullptr;
    pcre2_match_data* m_match = nullptr;
};
#endif

/// Calls `visit` with a null pointer to each peer's class, ours first.
template <typename Visit>
void ForEach(Visit const& visit)
{
    visit(static_cast<Vorlane*>(nullptr));
    visit(static_cast<Standard*>(nullptr));
#ifdef VORLANE_HAVE_BOOST_REGEX
    visit(static_cast<Boost*>(nullptr));
#endif
#ifdef VORLANE_HAVE_RE2
    visit(static_cast<Re2<true>*>(nullptr));
#endif
#ifdef VORLANE_HAVE_PCRE2
    visit(static_cast<Pcre2<false>*>(nullptr));
    visit(static_cast<Pcre2<true>*>(nullptr));
#endif
}

} // namespace Peers

#endif
