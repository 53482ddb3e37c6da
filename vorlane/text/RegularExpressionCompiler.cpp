/// \file
/// From the text of an expression to its nodes. Two passes make the same descent (expression, branch, piece,
/// atom): the first adds up the length of the code and refuses what is not valid, the second writes the
/// nodes. The descent is no deeper than the groups, of which there are nine at most. All state is in the
/// call. Tested by tests/text/PatternTest.cpp.

#include "vorlane/text/RegularExpressionInternal.h"

#include "vorlane/text/RegularExpressionSearchInternal.h"

#include <cstring>
#include <new>

namespace Vorlane {
namespace {

/// A stretch of code: where it begins, the node at its end that the next stretch is tied to, whether it must
/// consume a character, and whether it is one node that tests one character.
struct Stretch
{
    int first = 0;
    int last = 0;
    bool hasWidth = false;
    bool isSimple = false;
};

bool IsQuantifier(char c)
{
    return c == '*' || c == '+' || c == '?';
}

class Descent
{
public:
    /// A null `code` only measures.
    Descent(char const* expression, unsigned char* code) : m_cursor(expression), m_code(code)
    {
        Byte(compiledCheckValue);
    }

    /// The whole expression. False where it is not valid or its code is too long.
    bool Run()
    {
        Stretch whole;
        return Alternatives(0, whole) && m_length <= maximumCodeLength;
    }

    int Length() const { return m_length; }

    /// Whether the first piece of the first top-level branch can match without consuming.
    bool StartsLoosely() const { return m_startsLoosely; }

private:
    bool AtBranchEnd() const
    {
        return *m_cursor == 0 || *m_cursor == '|' || *m_cursor == '\n' || *m_cursor == ')';
    }

    /// An expression up to its end (group 0) or up to the ')' of its group.
    bool Alternatives(int group, Stretch& result)
    {
        int const open = group != 0 ? Node(OpOpen + group) : 0;
        int previousBranch = open;
        int openTails = 0; // the tails of finished branches, tied to each other until the end node is known
        result.hasWidth = true;
        for (;;) {
            Stretch branch;
            if (!Branch(branch))
                return false;
            result.hasWidth = result.hasWidth && branch.hasWidth;
            if (previousBranch != 0)
                SetNext(previousBranch, branch.first);
            previousBranch = branch.first;
            SetRaw(branch.last, openTails);
            openTails = branch.last;
            if (*m_cursor != '|' && *m_cursor != '\n')
                break;
            ++m_cursor;
        }
        if (*m_cursor != (group != 0 ? ')' : 0))
            return false;
        m_cursor += group != 0;
        int const end = Node(group != 0 ? OpClose + group : OpEnd);
        SetNext(previousBranch, end);
        while (openTails != 0) {
            int const next = Raw(openTails);
            SetNext(openTails, end);
            openTails = next;
        }
        result.first = open;
        result.last = end;
        return true;
    }

    bool Branch(Stretch& result)
    {
        result.first = Node(OpBranch);
        bool const isFirst = result.first == 1;
        while (!AtBranchEnd()) {
            Stretch piece;
            if (m_length > maximumCodeLength || !Piece(piece))
                return false;
            if (result.last != 0)
                SetNext(result.last, piece.first);
            else if (isFirst)
                m_startsLoosely = !piece.hasWidth;
            result.last = piece.last;
            result.hasWidth = result.hasWidth || piece.hasWidth;
        }
        if (result.last == 0)
            result.last = Node(OpNothing);
        return true;
    }

    bool Piece(Stretch& result)
    {
        if (!Atom(result))
            return false;
        char const quantifier = *m_cursor;
        if (!IsQuantifier(quantifier))
            return true;
        ++m_cursor;
        if (IsQuantifier(*m_cursor) || (quantifier != '?' && !result.hasWidth))
            return false;
        if (quantifier == '?')
            Optional(result);
        else if (result.isSimple)
            InsertBefore(quantifier == '*' ? OpStar : OpPlus, result), result.last = result.first;
        else if (quantifier == '*')
            AnyNumber(result);
        else
            AtLeastOnce(result);
        result.hasWidth = quantifier == '+';
        return true;
    }

    /// Branch(x), Branch(Nothing)
    void Optional(Stretch& x)
    {
        InsertBefore(OpBranch, x);
        int const operandEnd = x.last;
        Otherwise(x.first, x);
        SetNext(operandEnd, x.last);
    }

    /// Branch(x, Back to this branch), Branch(Nothing)
    void AnyNumber(Stretch& x)
    {
        InsertBefore(OpBranch, x);
        int const back = Node(OpBack);
        SetNext(x.last, back);
        SetNext(back, x.first);
        Otherwise(x.first, x);
    }

    /// x, Branch(Back to x), Branch(Nothing)
    void AtLeastOnce(Stretch& x)
    {
        int const again = Node(OpBranch);
        SetNext(x.last, again);
        SetNext(Node(OpBack), x.first);
        Otherwise(again, x);
    }

    /// Adds the alternative Branch(Nothing) to `branch`; the stretch now ends with it.
    void Otherwise(int branch, Stretch& stretch)
    {
        int const other = Node(OpBranch);
        SetNext(branch, other);
        stretch.last = Node(OpNothing);
        SetNext(other, stretch.last);
    }

    bool Atom(Stretch& result)
    {
        Opcode plain = OpEnd;
        switch (*m_cursor) {
        case '(':
            ++m_cursor;
            return ++m_groups < groupSlots && Alternatives(m_groups, result);
        case '[':
            ++m_cursor;
            return Set(result);
        case '^':
            plain = OpBeginText;
            break;
        case '$':
            plain = OpEndText;
            break;
        case '.':
            plain = OpAny;
            break;
        case '\\':
            plain = m_cursor[1] == '<' ? OpWordStart : m_cursor[1] == '>' ? OpWordEnd : OpEnd;
            m_cursor += plain != OpEnd;
            break;
        default:
            break;
        }
        if (plain == OpEnd)
            return Literals(result);
        ++m_cursor;
        result.first = result.last = Node(plain);
        result.hasWidth = result.isSimple = plain == OpAny;
        return true;
    }

    /// A run of literals, as one node. A quantifier behind a longer run is left its last character.
    bool Literals(Stretch& result)
    {
        result.first = result.last = Node(OpExactly);
        int count = 0;
        for (char const* before = m_cursor; int const c = TakeLiteral(); before = m_cursor) {
            if (count > 0 && IsQuantifier(*m_cursor)) {
                m_cursor = before;
                break;
            }
            Byte(c);
            if (++count > maximumCodeLength)
                return false;
        }
        Byte(0);
        result.hasWidth = true;
        result.isSimple = count == 1;
        return count > 0;
    }

    /// The next literal, quoted or not, or 0 where there is none.
    int TakeLiteral()
    {
        char const* at = m_cursor;
        if (*at == '\\') {
            ++at;
            if (*at == '<' || *at == '>')
                return 0;
        } else if (std::strchr("^$.[()|?+*\n", *at) != nullptr) {
            return 0;
        }
        if (*at == 0)
            return 0;
        m_cursor = at + 1;
        return static_cast<unsigned char>(*at);
    }

    /// The members of a set, behind the '['.
    bool Set(Stretch& result)
    {
        bool const negated = *m_cursor == '^';
        m_cursor += negated;
        result.first = result.last = Node(negated ? OpAnyBut : OpAnyOf);
        if (*m_cursor == ']' || *m_cursor == '-')
            Byte(*m_cursor++);
        for (; *m_cursor != 0 && *m_cursor != ']'; ++m_cursor) {
            if (*m_cursor != '-' || m_cursor[1] == ']' || m_cursor[1] == 0) {
                Byte(*m_cursor);
            } else {
                int const low = static_cast<unsigned char>(m_cursor[-1]);
                int const high = static_cast<unsigned char>(*++m_cursor);
                if (low > high)
                    return false;
                for (int c = low + 1; c <= high; ++c)
                    Byte(c);
            }
            if (m_length > maximumCodeLength)
                return false;
        }
        Byte(0);
        if (*m_cursor != ']')
            return false;
        ++m_cursor;
        result.hasWidth = result.isSimple = true;
        return true;
    }

    void Byte(int value)
    {
        if (m_code != nullptr)
            m_code[m_length] = static_cast<unsigned char>(value);
        ++m_length;
    }

    int Node(int opcode)
    {
        int const node = m_length;
        Byte(opcode);
        Byte(0);
        Byte(0);
        return node;
    }

    /// Puts a header in front of a stretch, which runs to the end of the code.
    void InsertBefore(Opcode opcode, Stretch& stretch)
    {
        int const end = m_length;
        m_length += nodeHeaderLength;
        if (m_code != nullptr) {
            unsigned char* const at = m_code + stretch.first;
            std::memmove(at + nodeHeaderLength, at, static_cast<std::size_t>(end - stretch.first));
            at[0] = opcode;
            at[1] = at[2] = 0;
        }
        stretch.last += nodeHeaderLength;
    }

    void SetNext(int node, int next)
    {
        if (m_code != nullptr)
            SetRaw(node, m_code[node] == OpBack ? node - next : next - node);
    }

    void SetRaw(int node, int value)
    {
        if (m_code != nullptr) {
            m_code[node + 1] = static_cast<unsigned char>(value >> 8);
            m_code[node + 2] = static_cast<unsigned char>(value);
        }
    }

    int Raw(int node) const { return m_code != nullptr ? m_code[node + 1] << 8 | m_code[node + 2] : 0; }

    char const* m_cursor;
    unsigned char* m_code;
    int m_length = 0;
    int m_groups = 0;
    bool m_startsLoosely = false;
};

/// The hints need an expression of one top-level branch; all others leave them unset.
void SetHints(CompiledExpression& compiled, bool startsLoosely)
{
    unsigned char const* const code = compiled.Code();
    int const branch = 1;
    if (code[NextNode(code, branch)] != OpEnd)
        return;
    int const first = branch + nodeHeaderLength;
    char const* const operand = reinterpret_cast<char const*>(code + first + nodeHeaderLength);
    if (code[first] == OpExactly)
        compiled.m_firstCharacter = *operand;
    else if (code[first] == OpBeginText)
        compiled.m_anchored = true;
    if (!startsLoosely)
        return;
    // The chain of the branch itself never enters a group, so nothing optional is taken for required.
    for (int node = first; node != 0; node = NextNode(code, node)) {
        if (code[node] != OpExactly)
            continue;
        char const* const literal = reinterpret_cast<char const*>(code + node + nodeHeaderLength);
        int const length = static_cast<int>(std::strlen(literal));
        if (length >= compiled.m_requiredLength) {
            compiled.m_requiredText = literal;
            compiled.m_requiredLength = length;
        }
    }
}

} // namespace

CompiledExpression* CompileExpression(char const* expression)
{
    Descent measure(expression, nullptr);
    if (!measure.Run())
        return nullptr;
    std::size_t const size = sizeof(CompiledExpression) + static_cast<std::size_t>(measure.Length());
    void* const block = ::operator new(size);
    std::memset(block, 0, size);
    auto* const compiled = new (block) CompiledExpression();
    compiled->m_codeLength = measure.Length();
    Descent emit(expression, compiled->Code());
    emit.Run();
    SetHints(*compiled, emit.StartsLoosely());
    return compiled;
}

void ReleaseExpression(CompiledExpression* compiled) noexcept
{
    if (compiled == nullptr)
        return;
    delete compiled->m_search;
    compiled->~CompiledExpression();
    ::operator delete(compiled);
}

} // namespace Vorlane
