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
    CString const blanks(" \t\n\v\f\r\xA0 x\x85 \r\f\v\n\t ");
    struct Row
    {
        char const* name;
        CString result;
        std::string expected;
    };
    Row const rows[] = {
        {"null", CString(null), ""},
        {"null of length 0", CString(null, 0), ""},
        {"bytes", CString("a\0b", 3), "a\0b"s},
        {"wide", CString(wide, 6), "a\xE9??\0\xFF"s},
        {"Left -1", text.Left(-1), ""},
        {"Left 3", text.Left(3), "abc"},
        {"Left most", text.Left(INT_MAX), "abcd"},
        {"Mid least", text.Mid(INT_MIN), "abcd"},
        {"Mid 2", text.Mid(2), "cd"},
        {"Mid 4", text.Mid(4), ""},
        {"Mid most", text.Mid(INT_MAX), ""},
        {"Mid 2 100", text.Mid(2, 100), "cd"},
        {"Mid -5 2", text.Mid(-5, 2), "ab"},
        {"Mid 1 -1", text.Mid(1, -1), ""},
        {"Mid 9 1", text.Mid(9, 1), ""},
        {"Mid 3 most", text.Mid(3, INT_MAX), "d"},
        {"Mid of Mid", text.Mid(1).Mid(1).Left(1), "c"},
        {"TrimLeft", CString(blanks).TrimLeft(), "\xA0 x\x85 \r\f\v\n\t "},
        {"TrimRight", CString(blanks).TrimRight(), " \t\n\v\f\r\xA0 x\x85"},
        {"Trim all", CString(" \n ").TrimRight(), ""},
        {"MakeLower", CString("A@Z[\xC4z").MakeLower(), "a@z[\xC4z"},
        {"Delete front", WithoutBytes("0123456789abcdefghij", -1, 2), "23456789abcdefghij"},
        {"Delete most", WithoutBytes("0123456789abcdefghij", 0, 18), "ij"},
        {"Delete inside", WithoutBytes("0123456789abcdefghij", 1, 17), "0ij"},
        {"Delete end", WithoutBytes(text, 3, INT_MAX), "abc"},
        {"Delete none", WithoutBytes(text, 4, 1) + WithoutBytes(text, 0, -1), "abcdabcd"},
        {"joined", 'a' + text + 'b' + "c" + text.Left(1) + null, "aabcdbca"},
        {"formatted", Formatted(0), "x"},
        {"formatted 255", Formatted(254), std::string(254, ' ') + "x"},
        {"formatted 256", Formatted(255), std::string(255, ' ') + "x"},
        {"formatted long", Formatted(100000), std::string(100000, ' ') + "x"},
        {"unchanged", text, "abcd"},
        {"unchanged", blanks, " \t\n\v\f\r\xA0 x\x85 \r\f\v\n\t "},
    };
    for (Row const& row : rows) {
        EXPECT_EQ(Bytes(row.result), row.expected) << row.name;
    }
}

TEST(CStringTest, FindsBytesAndReadsThemUpToTheTerminator)
{
    CString const text = CString("xab\0b\xA0", 6).Mid(1);
    struct Row
    {
        char const* name;
        int result;
        int expected;
    };
    Row const rows[] = {
        {"b", text.Find('b'), 1},
        {"b from 2", text.Find('b', 2), 3},
        {"zero byte", text.Find('\0'), 2},
        {"A0", text.Find('\xA0', 4), 4},
        {"from -1", text.Find('a', -1), -1},
        {"from the end", text.Find('\0', 5), -1},
        {"from most", text.Find('a', INT_MAX), -1},
        {"one of", text.FindOneOf("\xA0zb"), 1},
        {"one of high", text.FindOneOf("z\xA0"), 4},
        {"one of none", text.FindOneOf(""), -1},
        {"one of null", text.FindOneOf(null), -1},
        {"byte 4", text[4], '\xA0'},
        {"terminator", text.GetAt(5), 0},
        {"terminator of nothing", CString()[0], 0},
    };
    for (Row const& row : rows) {
        EXPECT_EQ(row.result, row.expected) << row.name;
    }
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
    using Operation = void (*)(CString&, CString&, std::string&, std::string&, int);
    constexpr std::size_t all = std::string::npos;
    Operation const operations[] = {
        [](CString& a, CString& b, std::string& c, std::string& d, int) { a = b, c = d; },
        [](CString& a, CString& b, std::string& c, std::string& d, int) { a += b, c += std::string(d); },
        [](CString& a, CString&, std::string& c, std::string&, int n) {
            a += static_cast<char>('A' + n), c += static_cast<char>('A' + n);
        },
        [](CString& a, CString& b, std::string& c, std::string& d, int n) {
            a = b.Mid(n), c = d.substr(Size(n), all);
        },
        [](CString& a, CString& b, std::string& c, std::string& d, int n) {
            a = b.Left(n) + a.Mid(2, 3);
            c = d.substr(0, Size(n)) + c.substr(std::min(c.size(), Size(2)), 3);
        },
        [](CString& a, CString& b, std::string& c, std::string& d, int n) {
            a = static_cast<char const*>(b) + n, c = std::string(d).substr(Size(n));
        },
        [](CString&, CString& b, std::string&, std::string& d, int n) {
            b.Delete(0, n), d.erase(0, Size(n));
        },
        [](CString& a, CString& b, std::string& c, std::string& d, int) { std::swap(a, b), std::swap(c, d); },
    };
    VorlaneTest::SeededEngine random;
    SCOPED_TRACE(random.Describe());
    CString texts[4];
    std::string expected[4];
    for (int step = 0; step < 30000; ++step) {
        int const i = random.Integer(0, 3);
        int const j = random.Integer(0, 3);
        int const n = random.Integer(0, static_cast<int>(expected[j].size()));
        if (expected[i].size() > 60) {
            texts[i] = "";
            expected[i] = "";
        } else {
            operations[random.Integer(0, 7)](texts[i], texts[j], expected[i], expected[j], i == j ? 0 : n);
        }
        ASSERT_EQ(Bytes(texts[i]), expected[i]) << step;
        ASSERT_EQ(Bytes(texts[j]), expected[j]) << step;
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
        auto const prepare = [&] {
            copy = text = value;
        };
        auto const check = [&] {
            EXPECT_EQ(text, value);
        };
        EXPECT_GT(VorlaneTest::ForEachFailedAllocation(prepare, operation, check), 0);
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
