#include "vorlane/text/UniqueString.h"

#include "tests/support/AllocationFailure.h"
#include "tests/support/ArchivedBytes.h"

#include "gtest/gtest.h"

#include <string>
#include <unordered_map>

using Vorlane::UniqueString;
using Vorlane::UniqueStringTable;

TEST(UniqueStringTest, EqualTextsHaveOneAddress)
{
    std::string word = "abc";
    UniqueString const first(word.c_str());
    word = "xyz"; // the table holds a copy
    UniqueString const second(CString("abc"));
    UniqueString third(UniqueString("ABC"));
    EXPECT_STREQ(first.String(), "abc");
    EXPECT_EQ(first.StringPtr(), second.StringPtr());
    EXPECT_NE(first.StringPtr(), third.StringPtr());
    EXPECT_STREQ(third.String(), "ABC");
    third = first;
    EXPECT_EQ(third.StringPtr(), first.StringPtr());
    third = "abd";
    third = CString("abc\0def", 7);
    EXPECT_EQ(third.StringPtr(), first.StringPtr());
    third = third.String();
    EXPECT_EQ(third.StringPtr(), first.StringPtr());
    EXPECT_NE(UniqueString("\xFF").StringPtr(), UniqueString("\x7F").StringPtr());
}

TEST(UniqueStringTest, EverythingEmptyIsTheOneNullText)
{
    int const count = UniqueString::m_table.GetCount();
    UniqueString handle("old");
    handle = static_cast<char const*>(nullptr);
    UniqueString const rows[] = {static_cast<char const*>(nullptr), "", CString(), CString("\0a", 2), handle};
    for (UniqueString const& row : rows) {
        EXPECT_EQ(row.StringPtr(), &UniqueStringTable::null);
        EXPECT_TRUE(row.String().IsEmpty());
    }
    EXPECT_EQ(UniqueString::m_table.GetCount(), count + 1);
}

TEST(UniqueStringTest, AMillionWordsKeepTheirAddresses)
{
    int const distinct = 1000000;
    std::unordered_map<CString const*, int> numbers;
    numbers.reserve(distinct);
    for (int i = 0; i < distinct; ++i) {
        numbers.emplace(UniqueString(std::to_string(i).c_str()).StringPtr(), i);
    }
    ASSERT_EQ(numbers.size(), static_cast<std::size_t>(distinct));
    for (int i = 0; i < distinct; i += 7) {
        UniqueString const word(std::to_string(i).c_str());
        ASSERT_EQ(numbers.at(word.StringPtr()), i);
        ASSERT_EQ(std::string(word.String()), std::to_string(i));
    }
}

TEST(UniqueStringTest, ArchiveHoldsTheTextAlone)
{
    using VorlaneTest::Bytes;
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
        EXPECT_EQ(VorlaneTest::LoadBytes(VorlaneTest::unsetSchema, row.bytes, serialize), 0);
        EXPECT_EQ(handle.StringPtr(), UniqueString(row.text).StringPtr());
        EXPECT_EQ(VorlaneTest::StoredBytes(VorlaneTest::unsetSchema, serialize), row.stored);
        UniqueString const before(handle);
        EXPECT_EQ(VorlaneTest::LoadBytes(VorlaneTest::unsetSchema, {3, 'a', 'b'}, serialize),
                  CArchiveException::endOfFile);
        EXPECT_EQ(handle.StringPtr(), before.StringPtr());
    }
}

TEST(UniqueStringTest, AWordThatDoesNotFitInMemoryLeavesNoTrace)
{
    UniqueString handle("before");
    std::string word;
    int round = 0;
    int count = 0;
    int const failures = VorlaneTest::ForEachFailedAllocation(
        [&] {
            word = "a word that needs storage of its own " + std::to_string(++round);
            count = UniqueString::m_table.GetCount();
        },
        [&] { handle = word.c_str(); },
        [&] {
            EXPECT_STREQ(handle.String(), "before");
            EXPECT_EQ(UniqueString::m_table.GetCount(), count);
        });
    EXPECT_GT(failures, 0);
    EXPECT_STREQ(handle.String(), word.c_str());
}
