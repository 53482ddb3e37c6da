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

namespace {

std::string Bytes(CString const& text)
{
    EXPECT_EQ(static_cast<char const*>(text)[text.GetLength()], '\0');
    return std::string(text, static_cast<std::size_t>(text.GetLength()));
}

int SignOf(int value)
{
    return (value > 0) - (value < 0);
}

} // namespace

TEST(CStringTest, ComesFromBytesAndWideCharacters)
{
    EXPECT_EQ(Bytes(CString()), "");
    EXPECT_EQ(Bytes(CString(static_cast<char const*>(nullptr))), "");
    EXPECT_EQ(Bytes(CString(static_cast<char const*>(nullptr), 0)), "");
    EXPECT_EQ(Bytes(CString("a\0b", 3)), std::string("a\0b", 3));
    wchar_t const wide[] = {L'a', wchar_t{0xE9}, wchar_t{0x100}, wchar_t{-1}, L'\0', wchar_t{0xFF}};
    EXPECT_EQ(Bytes(CString(wide, 6)), std::string("a\xE9??\0\xFF", 6));
    EXPECT_THROW(CString("abc", -1), CInvalidArgException);
    EXPECT_THROW(CString(wide, -1), CInvalidArgException);
    EXPECT_THROW(CString(static_cast<char const*>(nullptr), 1), CInvalidArgException);
}

TEST(CStringTest, PiecesAreCutAtTheEnds)
{
    struct Row
    {
        char const* name;
        CString piece;
        char const* expected;
    };
    CString const text("abcd");
    Row const rows[] = {
        {"Left -1", text.Left(-1), ""},
        {"Left 0", text.Left(0), ""},
        {"Left 3", text.Left(3), "abc"},
        {"Left 4", text.Left(4), "abcd"},
        {"Left most", text.Left(INT_MAX), "abcd"},
        {"Mid least", text.Mid(INT_MIN), "abcd"},
        {"Mid 2", text.Mid(2), "cd"},
        {"Mid 4", text.Mid(4), ""},
        {"Mid most", text.Mid(INT_MAX), ""},
        {"Mid 2 100", text.Mid(2, 100), "cd"},
        {"Mid 1 2", text.Mid(1, 2), "bc"},
        {"Mid -5 2", text.Mid(-5, 2), "ab"},
        {"Mid 1 -1", text.Mid(1, -1), ""},
        {"Mid 9 1", text.Mid(9, 1), ""},
        {"Mid 3 most", text.Mid(3, INT_MAX), "d"},
        {"Mid of Mid", text.Mid(1).Mid(1).Left(1), "c"},
    };
    for (Row const& row : rows) {
        EXPECT_EQ(Bytes(row.piece), row.expected) << row.name;
    }
}

TEST(CStringTest, ByteAtAnIndexUpToTheTerminator)
{
    CString const text = CString("xxabc\xE9").Mid(2);
    EXPECT_EQ(text[0], 'a');
    EXPECT_EQ(text.GetAt(3), '\xE9');
    EXPECT_EQ(text.GetAt(4), '\0');
    EXPECT_EQ(CString()[0], '\0');
    for (int const index : {-1, 5, INT_MIN, INT_MAX}) {
        try {
            text.GetAt(index);
            ADD_FAILURE() << index;
        } catch (CInvalidArgException const& exception) {
            EXPECT_EQ(exception.what(), "index " + std::to_string(index) + " is outside 0 to 4");
        }
    }
}

TEST(CStringTest, ComparesUnsignedBytesInEveryMixture)
{
    char const* const inOrder[] = {"", "A", "B", "a", "ab", "b", "\x80", "\xE9"};
    for (char const* const a : inOrder) {
        for (char const* const b : inOrder) {
            SCOPED_TRACE(std::string(a) + " and " + b);
            CString const left = CString("x") + a;
            CString const right = CString("yx").Mid(1) + b;
            char const* const zeroTerminated = right;
            int const order = SignOf(left.Compare(right));
            EXPECT_EQ(order, SignOf(std::string(a).compare(b)));
            EXPECT_EQ(left == right, order == 0);
            EXPECT_EQ(left != zeroTerminated, order != 0);
            EXPECT_EQ(left < right, order < 0);
            EXPECT_EQ(left <= zeroTerminated, order <= 0);
            EXPECT_EQ(zeroTerminated<left, order> 0);
            EXPECT_EQ(zeroTerminated >= left, order <= 0);
            EXPECT_EQ(left > right, order > 0);
            EXPECT_EQ(std::less<CString>()(left, right), order < 0);
        }
    }
    // Bytes behind an embedded zero byte don't count, for == and for the hash as for Compare.
    CString const embedded("a\0b", 3);
    EXPECT_TRUE(embedded == "a" && embedded == CString("a\0c", 3));
    EXPECT_EQ(HashKey<CString const&>(embedded), HashKey<char const*>("a"));
    EXPECT_EQ(CString("x").Compare(nullptr), 'x');
}

TEST(CStringTest, FoldsAsciiLettersOnly)
{
    struct Row
    {
        char const* a;
        char const* b;
        int order;
    };
    Row const rows[] = {{"aBc", "AbC", 0}, {"abc", "ABCD", -1},  {"b", "AB", 1},   {"[", "a", -1},
                        {"_", "A", -1},    {"\xC4", "\xE4", -1}, {"\xE4", "z", 1}, {"", "", 0}};
    for (Row const& row : rows) {
        EXPECT_EQ(SignOf(CString(row.a).CompareNoCase(row.b)), row.order) << row.a << " and " << row.b;
    }
    CString text("A@Z[\xC4z");
    CString const copy = text;
    EXPECT_EQ(&text.MakeLower(), &text);
    EXPECT_EQ(Bytes(text), "a@z[\xC4z");
    EXPECT_EQ(Bytes(copy), "A@Z[\xC4z");
}

TEST(CStringTest, FindsBytes)
{
    CString const text("ab\0b\xA0", 5);
    EXPECT_EQ(text.Find('b'), 1);
    EXPECT_EQ(text.Find('b', 2), 3);
    EXPECT_EQ(text.Find('\0'), 2);
    EXPECT_EQ(text.Find('\xA0', 4), 4);
    for (int const start : {-1, 5, 6, INT_MAX}) {
        EXPECT_EQ(text.Find('a', start), -1) << start;
    }
    EXPECT_EQ(text.FindOneOf("\xA0z"), 4);
    EXPECT_EQ(text.FindOneOf("xba"), 0);
    EXPECT_EQ(text.FindOneOf(""), -1);
    EXPECT_EQ(text.FindOneOf(nullptr), -1);
}

TEST(CStringTest, TrimsTheSixBlankCharacters)
{
    CString text(" \t\n\v\f\r\xA0 x\x85 \r\f\v\n\t ");
    CString const copy = text;
    EXPECT_EQ(&text.TrimRight(), &text);
    EXPECT_EQ(Bytes(text), " \t\n\v\f\r\xA0 x\x85");
    EXPECT_EQ(&text.TrimLeft(), &text);
    EXPECT_EQ(Bytes(text), "\xA0 x\x85");
    EXPECT_EQ(copy.GetLength(), 17);
    EXPECT_EQ(Bytes(CString(" \n ").TrimLeft()), "");
    EXPECT_EQ(Bytes(CString(" \n ").TrimRight()), "");
}

TEST(CStringTest, ArgumentsMayLieInTheTextItself)
{
    CString text("abcdef");
    text += text;
    EXPECT_EQ(Bytes(text), "abcdefabcdef");
    text += static_cast<char const*>(text) + 10;
    EXPECT_EQ(Bytes(text), "abcdefabcdefef");
    text = static_cast<char const*>(text) + 10;
    EXPECT_EQ(Bytes(text), "efef");
    text = text.Mid(1);
    text = *&text;
    EXPECT_EQ(Bytes(text), "fef");
    text.Format("<%s|%s>", static_cast<char const*>(text), static_cast<char const*>(text) + 1);
    EXPECT_EQ(Bytes(text), "<fef|ef>");
    text = CString('a' + text + 'b' + "c" + text) + text.Left(1);
    EXPECT_EQ(Bytes(text), "a<fef|ef>bc<fef|ef><");
}

TEST(CStringTest, FormatsAnyLengthWithADecimalPoint)
{
    std::string const old = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "de_DE.UTF-8"); // where it is installed, a comma is the mark
    CString text;
    text.Format("%d %.2f %s", -5, 2.5, "x");
    std::setlocale(LC_ALL, old.c_str());
    EXPECT_EQ(Bytes(text), "-5 2.50 x");
    for (int const length : {0, 254, 255, 256, 257, 100000}) {
        text.Format("%*s", length, "");
        EXPECT_EQ(Bytes(text), std::string(static_cast<std::size_t>(length), ' '));
    }
    char const* const none = nullptr;
    EXPECT_THROW(text.Format(none), CInvalidArgException);
    EXPECT_EQ(text.GetLength(), 100000);
}

TEST(CStringTest, LentBufferIsNotShared)
{
    CString text("abc");
    CString const before = text;
    char* const buffer = text.GetBuffer(10);
    CString const during = text;
    EXPECT_STREQ(buffer, "abc");
    std::strcpy(buffer, "0123456789");
    text.ReleaseBuffer();
    EXPECT_EQ(Bytes(text), "0123456789");
    EXPECT_EQ(Bytes(before), "abc");
    EXPECT_EQ(Bytes(during), "abc");
    text.GetBuffer(0)[1] = '\0';
    text.ReleaseBuffer(3);
    EXPECT_EQ(Bytes(text), std::string("0\0"
                                       "2",
                                       3));
    text.ReleaseBuffer(-1);
    EXPECT_EQ(Bytes(text), "0");
    EXPECT_THROW(text.GetBuffer(-1), CInvalidArgException);
    EXPECT_THROW(text.ReleaseBuffer(-2), CInvalidArgException);
    EXPECT_THROW(text.ReleaseBuffer(1000), CInvalidArgException);
    CString empty;
    empty.GetBuffer(0);
    empty.ReleaseBuffer();
    EXPECT_TRUE(empty.IsEmpty());
}

TEST(CStringTest, BehavesAsAnIndependentValue)
{
    // Random operations on a few texts that share storage, beside std::string.
    VorlaneTest::SeededEngine random;
    SCOPED_TRACE(random.Describe());
    std::vector<CString> texts(4);
    std::vector<std::string> expected(4);
    for (int step = 0; step < 20000; ++step) {
        std::size_t const i = static_cast<std::size_t>(random.Integer(0, 3));
        std::size_t const j = static_cast<std::size_t>(random.Integer(0, 3));
        std::size_t const cut =
            static_cast<std::size_t>(random.Integer(0, static_cast<int>(expected[j].size())));
        switch (expected[i].size() > 200 ? 6 : random.Integer(0, 8)) {
        case 0:
            texts[i] = texts[j];
            expected[i] = expected[j];
            break;
        case 1:
            texts[i] += texts[j];
            expected[i] += std::string(expected[j]);
            break;
        case 2:
            texts[i] += static_cast<char>('A' + step % 50);
            expected[i] += static_cast<char>('A' + step % 50);
            break;
        case 3:
            texts[i] = texts[j].Mid(static_cast<int>(cut));
            expected[i] = expected[j].substr(cut);
            break;
        case 4:
            texts[i].MakeLower();
            for (char& c : expected[i]) {
                c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
            }
            break;
        case 5:
            texts[i] = static_cast<char const*>(texts[j]) + cut;
            expected[i] = expected[j].substr(cut);
            break;
        case 6:
            texts[i] = texts[i].Left(5) + texts[j].Mid(static_cast<int>(cut), 3);
            expected[i] = expected[i].substr(0, 5) + expected[j].substr(cut, 3);
            break;
        case 7:
            texts[j].Delete(0, static_cast<int>(cut));
            expected[j].erase(0, cut);
            break;
        default:
            texts[i] = std::move(texts[j]);
            expected[i] = i == j ? expected[i] : std::exchange(expected[j], "");
        }
        ASSERT_EQ(Bytes(texts[i]), expected[i]) << step;
        ASSERT_EQ(Bytes(texts[j]), expected[j]) << step;
    }
}

TEST(CStringTest, ALongTextIsEatenFromItsFrontInLinearTime)
{
    // Were each tail a copy, this would move half a terabyte.
    std::string const bytes(1000000, 'x');
    CString text(bytes.c_str());
    int steps = 0;
    while (!text.IsEmpty()) {
        text = text.Mid(1);
        ++steps;
    }
    EXPECT_EQ(steps, 1000000);
}

TEST(CStringTest, KeepsItsValueWhenMemoryRunsOut)
{
    std::string const longText(1000, 'x');
    char const* const value = "Value too long for the object ";
    CString text;
    CString copy;
    std::function<void()> const operations[] = {[&] { text = longText.c_str(); },
                                                [&] { text += longText.c_str(); },
                                                [&] { text = text + "x"; },
                                                [&] { text.MakeLower(); },
                                                [&] { text.TrimRight(); },
                                                [&] { text.Format("%s", longText.c_str()); },
                                                [&] { text.GetBuffer(1000); },
                                                [&] { text = text.Left(20); },
                                                [&] {
                                                    text = CString(L"wide and as long", 16);
                                                }};
    for (auto const& operation : operations) {
        auto const prepare = [&] {
            text = value;
            copy = text;
        };
        EXPECT_GT(VorlaneTest::ForEachFailedAllocation(prepare, operation, [&] { EXPECT_EQ(text, value); }),
                  0);
        EXPECT_EQ(copy, value);
    }
}

TEST(CStringTest, DeletesBytes)
{
    for (char const* const value : {"abcdef", "abcdefghijklmnopqrstuvwxyz"}) {
        std::string const all = value;
        for (int index = -1; index <= static_cast<int>(all.size()) + 1; ++index) {
            for (int const count : {-1, 0, 1, 5, 20, INT_MAX}) {
                CString text(value);
                CString const copy = text;
                std::string expected = all;
                std::size_t const first = std::min(static_cast<std::size_t>(std::max(index, 0)), all.size());
                expected.erase(first, static_cast<std::size_t>(std::max(count, 0)));
                EXPECT_EQ(text.Delete(index, count), static_cast<int>(expected.size()));
                EXPECT_EQ(Bytes(text), expected) << index << ' ' << count;
                EXPECT_EQ(Bytes(copy), all);
            }
        }
    }
}

TEST(CStringTest, LengthsPastIntAreRefused)
{
    // A buffer of half the range, hardly any of which is touched.
    constexpr int half = 1 << 30;
    CString text;
    text.GetBuffer(half);
    text.ReleaseBuffer(half);
    EXPECT_THROW(text += text, CMemoryException);
    EXPECT_EQ(text.GetLength(), half);
    EXPECT_THROW(text + text, CMemoryException);
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
                EXPECT_EQ(tail.GetLength(), 20 - n % 7);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(text, "shared among threads");
}
