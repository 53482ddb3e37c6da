#include "tests/support/AllocationFailure.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include "gtest/gtest.h"

#include <climits>
#include <clocale>
#include <functional>
#include <string>

static char const* const null = nullptr;

TEST(CStringTest, OtherFormsBecomeBytes)
{
    wchar_t const wide[] = {L'a', wchar_t{0xE9}, wchar_t{0x100}, wchar_t{-1}, L'\0', wchar_t{0xFF}};
    EXPECT_EQ(std::string(CString(wide, 6), 6), std::string("a\xE9??\0\xFF", 6));
    EXPECT_TRUE(CString(null).IsEmpty() && CString(nullptr).IsEmpty() && CString(null, 0).IsEmpty());
    EXPECT_TRUE(CString("x").Compare(null) > 0 && CString("x").FindOneOf(null) == -1);
    std::string const before = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "de_DE.UTF-8"); // where it is installed, a comma is the decimal mark
    for (int const width : {3, 252, 253, 100000}) {
        CString text("end");
        text.Format("%*.1f%s", width, 2.5, static_cast<char const*>(text));
        EXPECT_EQ(text, (std::string(static_cast<std::size_t>(width - 3), ' ') + "2.5end").c_str());
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
        VorlaneTest::AllocationFailure const noMemoryToTellWhy(0);
        EXPECT_THROW(operation(), CException) << &operation - refused;
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
