#include "tests/support/AllocationFailure.h"
#include "tests/support/Seed.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include "gtest/gtest.h"

#include <algorithm>
#include <climits>
#include <clocale>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace {

char const* const null = nullptr;
char const* const blanks = " \t\n\v\f\r";

/// A text and what it should be. Texts may share storage, or be short enough to need none.
struct Twins
{
    CString text;
    std::string twin;
};

std::size_t Size(int number)
{
    return static_cast<std::size_t>(std::max(number, 0));
}

std::string Part(std::string const& text, int first, int count)
{
    return text.substr(std::min(Size(first), text.size()), Size(count));
}

std::string Lower(std::string text)
{
    std::replace(text.begin(), text.end(), 'A', 'a');
    std::replace(text.begin(), text.end(), 'Z', 'z');
    return text;
}

/// Changes the first text, perhaps with the help of the second, which may be the same, and of two numbers.
using Operation = void (*)(Twins&, Twins&, int, int);

Operation const operations[] = {
    [](Twins& a, Twins& b, int, int) { a = b; },
    [](Twins& a, Twins& b, int, int) { std::swap(a, b); },
    [](Twins& a, Twins& b, int, int) { a.text += b.text, a.twin += std::string(b.twin); },
    [](Twins& a, Twins& b, int m, int) { a.text = b.text.Left(m), a.twin = Part(b.twin, 0, m); },
    [](Twins& a, Twins& b, int m, int) { a.text = b.text.Mid(m), a.twin = Part(b.twin, m, INT_MAX); },
    [](Twins& a, Twins& b, int m, int n) { a.text = b.text.Mid(m, n), a.twin = Part(b.twin, m, n); },
    [](Twins& a, Twins&, int, int) { a.text.TrimLeft(), a.twin.erase(0, a.twin.find_first_not_of(blanks)); },
    [](Twins& a, Twins&, int, int) { a.text.TrimRight(), a.twin.erase(a.twin.find_last_not_of(blanks) + 1); },
    [](Twins& a, Twins&, int, int) { a.text.MakeLower(), a.twin = Lower(a.twin); },
    [](Twins& a, Twins& b, int, int) {
        a.text = '<' + a.text + "|" + b.text + '>' + null;
        a.twin = '<' + a.twin + "|" + b.twin + '>';
    },
    [](Twins& a, Twins& b, int, int) {
        a.twin += std::string(b.twin.c_str());
        a.text += static_cast<char const*>(b.text);
    },
    [](Twins& a, Twins& b, int m, int) {
        std::size_t const skipped = Part(b.twin, 0, m).size();
        a.twin = std::string(b.twin.c_str() + skipped);
        a.text = static_cast<char const*>(b.text) + skipped;
    },
    [](Twins& a, Twins& b, int m, int) {
        a.twin = Part(b.twin, 0, m);
        a.text = CString(b.text, static_cast<int>(a.twin.size()));
    },
    [](Twins& a, Twins&, int m, int n) {
        int const length = a.text.Delete(m, n);
        EXPECT_EQ(length, a.text.GetLength());
        a.twin.erase(Part(a.twin, 0, m).size(), Size(n));
    },
    [](Twins& a, Twins& b, int, int) {
        std::string const both = "7<" + std::string(a.twin.c_str()) + "|" + b.twin.c_str() + ">";
        a.text.Format("%d<%s|%s>", 7, static_cast<char const*>(a.text), static_cast<char const*>(b.text));
        a.twin = both;
    },
    [](Twins& a, Twins&, int m, int n) {
        std::string const before = a.twin;
        int const length = m & 31;
        char* const buffer = a.text.GetBuffer(length);
        EXPECT_STREQ(buffer, before.c_str());
        CString const during = a.text;
        std::fill_n(buffer, length, 'b');
        buffer[length] = '\0';
        a.text.ReleaseBuffer(n < 2 ? -1 : length);
        a.twin = std::string(Size(length), 'b');
        EXPECT_EQ(during, before.c_str());
    },
};

template <typename Left, typename Right>
std::vector<bool> Comparisons(Left const& a, Right const& b)
{
    return {a == b, a != b, a<b, a> b, a <= b, a >= b};
}

void ExpectSameAnswers(Twins const& a, Twins const& b, char character, int start)
{
    char const* const bytesOfA = a.text;
    char const* const bytesOfB = b.text;
    // Bytes behind an embedded zero byte don't count, for the hash neither.
    int const order = std::strcmp(a.twin.c_str(), b.twin.c_str());
    EXPECT_EQ(Comparisons(a.text, b.text), Comparisons(order, 0));
    EXPECT_EQ(Comparisons(a.text, bytesOfB), Comparisons(order, 0));
    EXPECT_EQ(Comparisons(bytesOfA, b.text), Comparisons(order, 0));
    EXPECT_EQ(Comparisons(a.text.CompareNoCase(bytesOfB), 0),
              Comparisons(std::strcmp(Lower(a.twin).c_str(), Lower(b.twin).c_str()), 0));
    EXPECT_EQ(std::less<CString>()(a.text, b.text), order < 0);
    EXPECT_TRUE(order != 0 || HashKey<CString const&>(a.text) == HashKey<char const*>(bytesOfB));
    std::size_t const found = start < 0 ? std::string::npos : a.twin.find(character, Size(start));
    EXPECT_EQ(static_cast<std::size_t>(a.text.Find(character, start)), found);
    EXPECT_EQ(static_cast<std::size_t>(a.text.FindOneOf(bytesOfB)), a.twin.find_first_of(b.twin.c_str()));
}

} // namespace

TEST(CStringTest, BehavesAsAnIndependentValue)
{
    VorlaneTest::SeededEngine random;
    SCOPED_TRACE(random.Describe());
    std::string const alphabet(" \t\n\v\f\r\xA0\x85zZaA@[\xC4\0|", 17);
    Twins twins[4];
    for (int step = 0; step < 40000 && !testing::Test::HasFailure(); ++step) {
        Twins& a = twins[random.Integer(0, 3)];
        Twins& b = twins[random.Integer(0, 3)];
        int const edges[] = {INT_MIN, -1, 0, 1, random.Integer(0, 40), b.text.GetLength(), INT_MAX};
        char const character = alphabet[Size(random.Integer(0, 16))];
        if (a.twin.size() > 60) {
            a = Twins();
        } else if (step % 3 != 0) {
            a.text += character;
            a.twin += character;
        } else {
            operations[random.Integer(0, 15)](a, b, edges[random.Integer(0, 6)], edges[random.Integer(0, 6)]);
        }
        for (Twins const& twin : twins) {
            EXPECT_EQ(std::string(twin.text, Size(twin.text.GetLength())), twin.twin) << step;
            EXPECT_EQ(twin.text[twin.text.GetLength()], '\0');
        }
        ExpectSameAnswers(a, b, character, edges[random.Integer(0, 6)]);
    }
}

TEST(CStringTest, OtherFormsBecomeBytes)
{
    wchar_t const wide[] = {L'a', wchar_t{0xE9}, wchar_t{0x100}, wchar_t{-1}, L'\0', wchar_t{0xFF}};
    EXPECT_EQ(std::string(CString(wide, 6), 6), std::string("a\xE9??\0\xFF", 6));
    EXPECT_TRUE(CString(null).IsEmpty() && CString(nullptr).IsEmpty() && CString(null, 0).IsEmpty());
    EXPECT_TRUE(CString("x").Compare(null) == 'x' && CString("x").FindOneOf(null) == -1);
    std::string const before = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "de_DE.UTF-8"); // where it is installed, a comma is the decimal mark
    for (int const width : {3, 252, 253, 100000}) {
        CString text("end");
        text.Format("%*.1f%s", width, 2.5, static_cast<char const*>(text));
        EXPECT_EQ(text, (std::string(Size(width - 3), ' ') + "2.5end").c_str());
    }
    std::setlocale(LC_ALL, before.c_str());
}

TEST(CStringTest, BadArgumentsAreRefused)
{
    CString text("abc");
    std::function<void()> const refused[] = {
        [&] { CString("abc", -1); }, [&] { CString(L"abc", -1); },    [&] { CString(null, 1); },
        [&] { text.GetAt(-1); },     [&] { text.GetAt(INT_MIN); },    [&] { text.Format(null); },
        [&] { text.GetBuffer(-1); }, [&] { text.ReleaseBuffer(-2); }, [&] { text.ReleaseBuffer(1000); },
    };
    for (auto const& operation : refused) {
        EXPECT_THROW(operation(), CInvalidArgException) << &operation - refused;
        EXPECT_EQ(text, "abc");
    }
    try {
        text.GetAt(4);
        ADD_FAILURE();
    } catch (CInvalidArgException const& exception) {
        EXPECT_STREQ(exception.what(), "index 4 is outside 0 to 3");
    }
    // Lengths past the range of int; hardly any of this buffer is touched.
    constexpr int half = 1 << 30;
    text.GetBuffer(half);
    text.ReleaseBuffer(half);
    EXPECT_THROW(text += text, CMemoryException);
    EXPECT_EQ(text.GetLength(), half);
}

TEST(CStringTest, ALongTextGrowsAndIsEatenInLinearTime)
{
    // Were each longer or shorter text a copy, this would move a terabyte.
    CString text;
    for (int length = 0; length < 1000000; ++length) {
        text += 'x';
    }
    for (int left = 1000000; left > 0; --left) {
        ASSERT_EQ(text.GetLength(), left);
        text = text.Mid(1);
    }
}

TEST(CStringTest, KeepsItsValueWhenMemoryRunsOut)
{
    std::string const longText(1000, 'x');
    char const* const value = "Value too long for the object ";
    CString text;
    CString copy;
    std::function<void()> const needMemory[] = {
        [&] { text = longText.c_str(); },
        [&] { text += longText.c_str(); },
        [&] { text = text + "x"; },
        [&] { text.MakeLower(); },
        [&] { text.TrimRight(); },
        [&] { text.Format("%s", longText.c_str()); },
        [&] { text.GetBuffer(1000); },
        [&] { text = text.Left(20); },
        [&] { text = CString(L"wide and as long", 16); },
    };
    for (auto const& operation : needMemory) {
        EXPECT_GT(VorlaneTest::ForEachFailedAllocation([&] { copy = text = value; }, operation,
                                                       [&] { EXPECT_EQ(text, value); }),
                  0);
        EXPECT_EQ(copy, value);
    }
}
