#include "vorlane/text/UniqueString.h"

#include "tests/support/AllocationFailure.h"
#include "tests/support/ArchivedBytes.h"

#include <string>
#include <vector>

using namespace VorlaneTest;
using Vorlane::UniqueString;
using Vorlane::UniqueStringTable;

TEST(UniqueStringTest, EqualTextsHaveOneAddress)
{
    std::string word = "abc";
    UniqueString const first(word.c_str());
    word = "xyz"; // the table holds a copy
    EXPECT_STREQ(first.String(), "abc");
    UniqueString other("abd");
    for (UniqueString const& same : {UniqueString("abc"), UniqueString(CString("abc\0def", 7)),
                                     other = first, other = "abc", other = other.String()}) {
        EXPECT_EQ(same.StringPtr(), first.StringPtr());
    }
    EXPECT_NE(UniqueString("ABC").StringPtr(), first.StringPtr());
    EXPECT_NE(UniqueString("\xFF").StringPtr(), UniqueString("\x7F").StringPtr());
    int const count = UniqueString::m_table.GetCount();
    char const* const none = nullptr;
    for (UniqueString const& empty :
         {UniqueString(none), UniqueString(""), UniqueString(CString("\0a", 2)), other = none}) {
        EXPECT_EQ(empty.StringPtr(), &UniqueStringTable::null);
        EXPECT_TRUE(empty.String().IsEmpty());
    }
    EXPECT_EQ(UniqueString::m_table.GetCount(), count);
}

TEST(UniqueStringTest, AMillionWordsKeepTheirAddresses)
{
    std::vector<CString const*> addresses;
    for (int i = 0; i < 1000000; ++i) {
        addresses.push_back(UniqueString(std::to_string(i).c_str()).StringPtr());
    }
    for (int i = 0; i < 1000000; ++i) {
        std::string const word = std::to_string(i);
        ASSERT_EQ(UniqueString(word.c_str()).StringPtr(), addresses[static_cast<std::size_t>(i)]);
        ASSERT_STREQ(*addresses[static_cast<std::size_t>(i)], word.c_str());
    }
}

TEST(UniqueStringTest, ArchiveHoldsTheTextAlone)
{
    struct
    {
        Bytes bytes;
        char const* text;
        Bytes stored;
    } const rows[] = {{{3, 'a', 'b', 'c'}, "abc", {3, 'a', 'b', 'c'}},
                      {{0}, "", {0}},
                      {{5, 'a', 'b', 'c', 0, 'd'}, "abc", {3, 'a', 'b', 'c'}},
                      {{0xFF, 0xFE, 0xFF, 2, 'a', 0, 0xE9, 0}, "a\xE9", {2, 'a', 0xE9}}};
    for (auto const& row : rows) {
        UniqueString handle("old");
        auto const serialize = [&](CArchive& ar) {
            handle.Serialize(ar);
        };
        EXPECT_EQ(LoadBytes(unsetSchema, row.bytes, serialize), 0);
        EXPECT_EQ(handle.StringPtr(), UniqueString(row.text).StringPtr());
        EXPECT_EQ(StoredBytes(unsetSchema, serialize), row.stored);
        EXPECT_EQ(LoadBytes(unsetSchema, {3, 'a', 'b'}, serialize), CArchiveException::endOfFile);
        EXPECT_EQ(handle.StringPtr(), UniqueString(row.text).StringPtr());
    }
}

TEST(UniqueStringTest, AWordThatDoesNotFitInMemoryLeavesNoTrace)
{
    UniqueString handle("before");
    std::string word;
    int round = 0;
    int count = 0;
    auto const prepare = [&] {
        word = "a word that needs storage of its own " + std::to_string(++round);
        count = UniqueString::m_table.GetCount();
    };
    auto const check = [&] {
        EXPECT_STREQ(handle.String(), "before");
        EXPECT_EQ(UniqueString::m_table.GetCount(), count);
    };
    EXPECT_GT(ForEachFailedAllocation(
                  prepare, [&] { handle = word.c_str(); }, check),
              0);
    EXPECT_STREQ(handle.String(), word.c_str());
}
