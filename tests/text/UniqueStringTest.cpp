#include "vorlane/text/UniqueString.h"

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
