/// \file
/// From nodes to instructions: literals become one instruction a character, the nodes that only lead on
/// vanish, and the bytes are sorted into classes.

#include "vorlane/text/RegularExpressionProgramInternal.h"

#include <algorithm>
#include <cstring>

namespace Vorlane {
namespace {

// Space, letters, digits and punctuation by their usual share of prose and source text.
constexpr unsigned short byteFrequencies[128] = {
    // clang-format off
    10, 1, 1, 1, 1, 1, 1, 1, 1, 30, 220, 1, 1, 20, 1, 1,                // controls
    1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
    1700, 6, 40, 5, 5, 3, 3, 25, 30, 30, 15, 5, 95, 40, 95, 15,         // space ! " # $ % & ' ( ) * + , - . /
    40, 40, 30, 20, 15, 20, 15, 15, 15, 20, 20, 12, 6, 10, 6, 5,        // 0 to 9 : ; < = > ?
    2, 28, 15, 27, 20, 32, 16, 13, 14, 36, 4, 4, 27, 18, 28, 30,        // @ A to O
    28, 2, 30, 36, 36, 15, 6, 14, 4, 16, 2, 8, 5, 8, 2, 20,             // P to Z [ \ ] ^ _
    5, 550, 120, 290, 270, 870, 160, 140, 300, 560, 12, 45, 290, 170, 520, 570, // ` a to o
    170, 9, 500, 470, 650, 210, 80, 100, 25, 130, 8, 4, 3, 4, 2, 1,     // p to z { | } ~
    // clang-format on
};

bool HasString(unsigned char opcode)
{
    return opcode == OpAnyOf || opcode == OpAnyBut || opcode == OpExactly;
}

bool IsLoop(unsigned char opcode)
{
    return opcode == OpStar || opcode == OpPlus;
}

int StringLength(unsigned char const* code, int node)
{
    return static_cast<int>(std::strlen(reinterpret_cast<char const*>(code + node + nodeHeaderLength)));
}

/// The bytes from a node to the one that stands behind it, the operand of a loop included.
int NodeLength(unsigned char const* code, int node)
{
    int length = nodeHeaderLength;
    if (IsLoop(code[node]))
        length += NodeLength(code, node + nodeHeaderLength);
    else if (HasString(code[node]))
        length += StringLength(code, node) + 1;
    return length;
}

/// Whether a node only leads on to another.
bool IsPassage(unsigned char const* code, int node)
{
    return code[node] == OpNothing || code[node] == OpBack ||
           (code[node] == OpBranch && code[NextNode(code, node)] != OpBranch);
}

int InstructionCount(unsigned char const* code, int node)
{
    if (IsLoop(code[node]))
        return 2;
    if (code[node] == OpExactly)
        return StringLength(code, node);
    return IsPassage(code, node) ? 0 : 1;
}

} // namespace

int ByteFrequency(unsigned char c)
{
    return c < 128 ? byteFrequencies[c] : 2;
}

void ByteSet::AddAll(ByteSet const& other)
{
    for (std::size_t i = 0; i < m_words.size(); ++i)
        m_words[i] |= other.m_words[i];
}

void ByteSet::Invert()
{
    for (std::uint64_t& word : m_words)
        word = ~word;
}

ByteSet ByteSet::Borders() const
{
    ByteSet borders;
    std::uint64_t carry = m_words[0] & 1; // byte 0 has no predecessor
    for (std::size_t i = 0; i < m_words.size(); ++i) {
        borders.m_words[i] = m_words[i] ^ (m_words[i] << 1 | carry);
        carry = m_words[i] >> 63;
    }
    return borders;
}

bool ExpressionProgram::Holds(Instruction::Kind kind, Neighbour left, Neighbour right)
{
    switch (kind) {
    case Instruction::beginText:
        return left == Neighbour::edge;
    case Instruction::endText:
        return right == Neighbour::edge;
    case Instruction::wordStart:
        return right == Neighbour::word && left != Neighbour::word;
    default:
        return right != Neighbour::word;
    }
}

ExpressionProgram::ExpressionProgram(CompiledExpression const& compiled)
{
    Emit(compiled);
    SortIntoClasses();
}

InstructionIndex ExpressionProgram::AddSet(ByteSet const& members)
{
    sets.push_back(members);
    return static_cast<InstructionIndex>(sets.size() - 1);
}

/// The instruction of a node that tests one character, or the first character of a literal.
Instruction ExpressionProgram::Single(unsigned char const* code, int node, InstructionIndex next)
{
    unsigned char const* const operand = code + node + nodeHeaderLength;
    if (code[node] == OpExactly)
        return {Instruction::character, *operand, next, 0};
    if (code[node] == OpAny)
        return {Instruction::set, 0, next, 0}; // the first set is that of all characters
    ByteSet members;
    for (unsigned char const* member = operand; *member != 0; ++member)
        members.Add(*member);
    if (code[node] == OpAnyBut) {
        members.Invert();
        members.Remove(0);
    }
    return {Instruction::set, 0, next, AddSet(members)};
}

void ExpressionProgram::Emit(CompiledExpression const& compiled)
{
    unsigned char const* const code = compiled.Code();
    std::vector<InstructionIndex> indexOf(static_cast<std::size_t>(compiled.m_codeLength));
    int count = 2;
    for (int node = 1; node < compiled.m_codeLength; node += NodeLength(code, node)) {
        indexOf[static_cast<std::size_t>(node)] = static_cast<InstructionIndex>(count);
        count += InstructionCount(code, node);
    }
    auto const target = [&](int node) {
        while (IsPassage(code, node))
            node = code[node] == OpBranch ? node + nodeHeaderLength : NextNode(code, node);
        return indexOf[static_cast<std::size_t>(node)];
    };

    instructions.reserve(static_cast<std::size_t>(count));
    sets.reserve(8);
    ByteSet all;
    all.Invert();
    all.Remove(0);
    AddSet(all);
    start = target(1);
    instructions.push_back({Instruction::fork, 0, start, searchAny});
    instructions.push_back({Instruction::set, 0, searchStart, 0});
    for (int node = 1; node < compiled.m_codeLength; node += NodeLength(code, node)) {
        if (IsPassage(code, node))
            continue;
        InstructionIndex const next =
            code[node] == OpEnd ? InstructionIndex(0) : target(NextNode(code, node));
        if (code[node] == OpBranch)
            instructions.push_back({Instruction::fork, 0, target(node + nodeHeaderLength), next});
        else
            EmitNode(code, node, next);
    }
}

/// The instructions of any node but OpBranch; `next` is that of the node that follows.
void ExpressionProgram::EmitNode(unsigned char const* code, int node, InstructionIndex next)
{
    unsigned char const opcode = code[node];
    auto const here = static_cast<InstructionIndex>(instructions.size());
    auto const test = [&](Instruction::Kind kind, bool left, bool right) {
        looksLeft = looksLeft || left;
        looksRight = looksRight || right;
        instructions.push_back({kind, 0, next, 0});
    };
    switch (opcode) {
    case OpEnd:
        return test(Instruction::accept, false, false);
    case OpBeginText:
        return test(Instruction::beginText, true, false);
    case OpEndText:
        return test(Instruction::endText, false, true);
    case OpWordStart:
        return test(Instruction::wordStart, true, true);
    case OpWordEnd:
        return test(Instruction::wordEnd, false, true);
    case OpAny:
    case OpAnyOf:
    case OpAnyBut:
        return instructions.push_back(Single(code, node, next));
    case OpStar:
    case OpPlus: {
        // The star enters by its fork, the plus by its body.
        auto const second = static_cast<InstructionIndex>(here + 1);
        InstructionIndex const loop = opcode == OpStar ? here : second;
        InstructionIndex const body = opcode == OpStar ? second : here;
        Instruction const single = Single(code, node + nodeHeaderLength, loop);
        instructions.resize(instructions.size() + 2);
        instructions[loop] = {Instruction::fork, 0, body, next};
        instructions[body] = single;
        return;
    }
    case OpExactly: {
        int const length = StringLength(code, node);
        for (int i = 0; i < length; ++i) {
            auto const following = i + 1 < length ? static_cast<InstructionIndex>(here + i + 1) : next;
            instructions.push_back({Instruction::character, code[node + nodeHeaderLength + i], following, 0});
        }
        return;
    }
    default: {
        bool const isClose = opcode > OpClose;
        groupCount += isClose;
        int const bound = isClose ? 2 * (opcode - OpClose - 1) + 1 : 2 * (opcode - OpOpen - 1);
        instructions.push_back({Instruction::mark, static_cast<unsigned char>(bound), next, 0});
    }
    }
}

/// Bytes fall into one class if no character, no set and no test of word characters parts their neighbours;
/// the classes are intervals.
void ExpressionProgram::SortIntoClasses()
{
    ByteSet borders; // the bytes that begin a class
    auto const interval = [&](unsigned char low, unsigned char high) {
        borders.Add(low);
        if (high < 255)
            borders.Add(static_cast<unsigned char>(high + 1));
    };
    interval(0, 0);
    for (Instruction const& instruction : instructions)
        if (instruction.kind == Instruction::character)
            interval(instruction.operand, instruction.operand);
    for (ByteSet const& members : sets)
        borders.AddAll(members.Borders());
    if (looksLeft || looksRight) {
        interval('0', '9');
        interval('A', 'Z');
        interval('_', '_');
        interval('a', 'z');
    }
    representatives.reserve(32);
    for (unsigned int word = 0; word < 4; ++word)
        for (std::uint64_t bits = borders.Words()[word]; bits != 0; bits &= bits - 1)
            representatives.push_back(
                static_cast<unsigned char>(64 * word + static_cast<unsigned int>(__builtin_ctzll(bits))));
    for (std::size_t i = 0; i < representatives.size(); ++i) {
        std::size_t const end = i + 1 < representatives.size() ? representatives[i + 1] : classOf.size();
        std::fill(classOf.begin() + representatives[i], classOf.begin() + static_cast<std::ptrdiff_t>(end),
                  static_cast<unsigned char>(i));
    }
}

} // namespace Vorlane
