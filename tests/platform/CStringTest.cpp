#include "tests/support/AllocationFailure.h"
#include "tests/support/Seed.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include "gtest/gtest.h"

#include <algorithm>
#include <climits>
#include <clocale>
#include <functional>
#include <string>
#include <thread>
#include <vector>

using namespace std::string_literals;

namespace {

char const* const null = nullptr;

std::string Bytes(CString const& text)
{
    EXPECT_EQ(static_cast<char const*>(text)[text.GetLength()], '\0');
    return std::string(text, static_cast<std::size_t>(text.GetLength()));
}

/// The texts with a bar behind each.
std::string Listed(std::initializer_list<CString> texts)
{
    std::string all;
    for (CString const& text : texts) {
        all += Bytes(text) + '|';
    }
    return all;
}

CString WithoutBytes(CString text, int first, int count)
{
    int const length = text.Delete(first, count);
    EXPECT_EQ(length, text.GetLength());
    return text;
}

CString Formatted(int width)
{
    CString text("x");
    text.Format("%*s%s", width, "", static_cast<char const*>(text));
    return text;
}

std::size_t Size(int number)
{
    return static_cast<std::size_t>(number);
}

int SignOf(int value)
{
    return (value > 0) - (value < 0);
}

} // namespace

TEST(CStringTest, OperationsGiveTheirBytes)
{
    wchar_t const wide[] = {L'a', wchar_t{0xE9}, wchar_t{0x100}, wchar_t{-1}, L'\0', wchar_t{0xFF}};
    CString const text("abcd");
    CString const digits("0123456789abcdefghij");
    CString const blanks(" \t\n\v\f\r\xA0 x\x85 \r\f\v\n\t ");
    EXPECT_EQ(
        Listed({CString(null), CString(nullptr), CString(null, 0), CString("a\0b", 3), CString(wide, 6)}),
        "|||a\0b|a\xE9??\0\xFF|"s);
    EXPECT_EQ(Listed({text.Left(-1), text.Left(3), text.Left(INT_MAX), text.Mid(1).Mid(1).Left(1)}),
              "|abc|abcd|c|");
    EXPECT_EQ(Listed({text.Mid(INT_MIN), text.Mid(2), text.Mid(4), text.Mid(INT_MAX), text.Mid(2, 100),
                      text.Mid(-5, 2), text.Mid(1, -1), text.Mid(9, 1), text.Mid(3, INT_MAX)}),
              "abcd|cd|||cd|ab|||d|");
    EXPECT_EQ(Listed({CString(blanks).TrimLeft(), CString(blanks).TrimRight(), CString(" \n ").TrimRight(),
                      CString("A@Z[\xC4z").MakeLower()}),
              "\xA0 x\x85 \r\f\v\n\t | \t\n\v\f\r\xA0 x\x85||a@z[\xC4z|");
    EXPECT_EQ(Listed({WithoutBytes(digits, -1, 2), WithoutBytes(digits, 0, 18), WithoutBytes(digits, 1, 17),
                      WithoutBytes(text, 3, INT_MAX), WithoutBytes(text, 4, 1), WithoutBytes(text, 0, -1)}),
              "23456789abcdefghij|ij|0ij|abc|abcd|abcd|");
    EXPECT_EQ(Listed({'a' + text + 'b' + "c" + text.Left(1) + null, text, blanks}),
              "aabcdbca|abcd| \t\n\v\f\r\xA0 x\x85 \r\f\v\n\t |");
    for (int const width : {0, 254, 255, 100000}) {
        EXPECT_EQ(Bytes(Formatted(width)), std::string(Size(width), ' ') + "x");
    }
}

TEST(CStringTest, FindsBytesAndReadsThemUpToTheTerminator)
{
    CString const text = CString("xab\0b\xA0", 6).Mid(1);
    EXPECT_EQ((std::vector<int>{text.Find('b'), text.Find('b', 2), text.Find('\0'), text.Find('\xA0', 4),
                                text.Find('a', -1), text.Find('\0', 5), text.Find('a', INT_MAX)}),
              (std::vector<int>{1, 3, 2, 4, -1, -1, -1}));
    EXPECT_EQ((std::vector<int>{text.FindOneOf("\xA0zb"), text.FindOneOf("z\xA0"), text.FindOneOf(""),
                                text.FindOneOf(null), text[4], text.GetAt(5), CString()[0]}),
              (std::vector<int>{1, 4, -1, -1, '\xA0', 0, 0}));
    try {
        text.GetAt(6);
        ADD_FAILURE();
    } catch (CInvalidArgException const& exception) {
        EXPECT_STREQ(exception.what(), "index 6 is outside 0 to 5");
    }
}

TEST(CStringTest, ComparesUnsignedBytesInEveryMixture)
{
    char const* const inOrder[] = {"", "A", "B", "[", "a", "ab", "b", "\x80", "\xE9"};
    for (char const* const a : inOrder) {
        for (char const* const b : inOrder) {
            SCOPED_TRACE(std::string(a) + " and " + b);
            CString const left(a);
            CString const right = CString("yx").Mid(2) + b;
            char const* const zeroTerminated = right;
            int const order = SignOf(std::string(a).compare(b));
            EXPECT_EQ(SignOf(left.Compare(right)), order);
            EXPECT_EQ(left == right, order == 0);
            EXPECT_EQ(left != zeroTerminated, order != 0);
            EXPECT_EQ(left < right, order < 0);
            EXPECT_EQ(left <= zeroTerminated, order <= 0);
            EXPECT_EQ(zeroTerminated<left, order> 0);
            EXPECT_EQ(zeroTerminated >= left, order <= 0);
            EXPECT_EQ(std::less<CString>()(left, right), order < 0);
            EXPECT_EQ(SignOf(left.CompareNoCase(right)),
                      SignOf(CString(left).MakeLower().Compare(CString(right).MakeLower())));
        }
    }
    // Bytes behind an embedded zero byte don't count, for == and for the hash as for Compare.
    CString const embedded("a\0b", 3);
    EXPECT_TRUE(embedded == "a" && embedded == CString("a\0c", 3));
    EXPECT_EQ(HashKey<CString const&>(embedded), HashKey<char const*>("a"));
    EXPECT_EQ(CString("x").Compare(nullptr), 'x');
}

TEST(CStringTest, ArgumentsMayLieInTheTextItself)
{
    CString text("abcdef");
    CString const copy = text;
    text += text;
    text += static_cast<char const*>(text) + 10;
    EXPECT_EQ(Bytes(text), "abcdefabcdefef");
    text = static_cast<char const*>(text) + 10;
    EXPECT_EQ(Bytes(text), "efef");
    text = text.Mid(1);
    text = *&text;
    text.Format("<%s|%s>", static_cast<char const*>(text), static_cast<char const*>(text) + 1);
    EXPECT_EQ(Bytes(text), "<fef|ef>");
    EXPECT_EQ(copy, "abcdef");
}

TEST(CStringTest, FormatsWithADecimalPointInAnyLocale)
{
    std::string const old = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "de_DE.UTF-8"); // where it is installed, a comma is the mark
    CString text;
    text.Format("%d %.2f", -5, 2.5);
    std::setlocale(LC_ALL, old.c_str());
    EXPECT_EQ(Bytes(text), "-5 2.50");
}

TEST(CStringTest, LentBufferIsNotShared)
{
    CString text("abc");
    CString const before = text;
    char* const buffer = text.GetBuffer(10);
    CString const during = text;
    std::strcpy(buffer + 1, "123456789");
    text.ReleaseBuffer();
    EXPECT_EQ(Bytes(text), "a123456789");
    EXPECT_EQ(Bytes(before) + Bytes(during), "abcabc");
    text.GetBuffer(0)[1] = '\0';
    text.ReleaseBuffer(3);
    EXPECT_EQ(Bytes(text), "a\0002"s);
}

TEST(CStringTest, BadArgumentsAreRefused)
{
    CString text("abc");
    std::function<void()> const operations[] = {
        [&] { CString("abc", -1); }, [&] { CString(L"abc", -1); },    [&] { CString(null, 1); },
        [&] { text.GetAt(-1); },     [&] { text.GetAt(INT_MIN); },    [&] { text.Format(null); },
        [&] { text.GetBuffer(-1); }, [&] { text.ReleaseBuffer(-2); }, [&] { text.ReleaseBuffer(1000); },
    };
    for (auto const& operation : operations) {
        EXPECT_THROW(operation(), CInvalidArgException) << &operation - operations;
        EXPECT_EQ(text, "abc");
    }
    // Lengths past the range of int; hardly any of this buffer is touched.
    constexpr int half = 1 << 30;
    text.GetBuffer(half);
    text.ReleaseBuffer(half);
    EXPECT_THROW(text += text, CMemoryException);
    EXPECT_EQ(text.GetLength(), half);
}

TEST(CStringTest, BehavesAsAnIndependentValue)
{
    // Random operations on texts that share storage or are short enough to need none, beside std::string.
    struct Twins
    {
        CString text;
        std::string twin;
    };
    using Operation = void (*)(Twins&, Twins&, int);
    Operation const operations[] = {
        [](Twins& a, Twins& b, int) { a.text = b.text, a.twin = b.twin; },
        [](Twins& a, Twins& b, int) { a.text += b.text, a.twin += std::string(b.twin); },
        [](Twins& a, Twins&, int n) {
            a.text += static_cast<char>('A' + n), a.twin += static_cast<char>('A' + n);
        },
        [](Twins& a, Twins& b, int n) { a.text = b.text.Mid(n), a.twin = b.twin.substr(Size(n)); },
        [](Twins& a, Twins& b, int n) {
            a.text = b.text.Left(n) + a.text.Mid(2, 3);
            a.twin = b.twin.substr(0, Size(n)) + a.twin.substr(std::min(a.twin.size(), Size(2)), 3);
        },
        [](Twins& a, Twins& b, int n) {
            a.text = static_cast<char const*>(b.text) + n, a.twin = std::string(b.twin).substr(Size(n));
        },
        [](Twins&, Twins& b, int n) { b.text.Delete(0, n), b.twin.erase(0, Size(n)); },
        [](Twins& a, Twins& b, int) { std::swap(a, b); },
    };
    VorlaneTest::SeededEngine random;
    SCOPED_TRACE(random.Describe());
    Twins twins[4];
    for (int step = 0; step < 30000; ++step) {
        Twins& a = twins[random.Integer(0, 3)];
        Twins& b = twins[random.Integer(0, 3)];
        int const n = random.Integer(0, static_cast<int>(b.twin.size()));
        if (a.twin.size() > 60) {
            a = Twins();
        } else {
            operations[random.Integer(0, 7)](a, b, &a == &b ? 0 : n);
        }
        ASSERT_EQ(Bytes(a.text), a.twin) << step;
        ASSERT_EQ(Bytes(b.text), b.twin) << step;
    }
}

TEST(CStringTest, ALongTextIsEatenFromItsFrontInLinearTime)
{
    // Were each tail a copy, this would move half a terabyte.
    CString text = Formatted(999999);
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
    std::function<void()> const operations[] = {
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
    for (auto const& operation : operations) {
        EXPECT_GT(VorlaneTest::ForEachFailedAllocation([&] { copy = text = value; }, operation,
                                                       [&] { EXPECT_EQ(text, value); }),
                  0);
        EXPECT_EQ(copy, value);
    }
}

TEST(CStringTest, SharedStorageMayBeReleasedOnDistinctThreads)
{
    CString const text("shared among threads");
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([copy = text]() mutable {
            for (int n = 0; n < 1000; ++n) {
                CString const tail = copy.Mid(n % 7);
                copy = n % 100 == 99 ? copy + "" : CString(copy);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(text, "shared among threads");
}
