#ifndef VORLANE_TESTS_COLOUR_COLOURTESTING_H
#define VORLANE_TESTS_COLOUR_COLOURTESTING_H

#include "tests/support/ArchivedBytes.h"

#include <string>

namespace VorlaneTest {

/// The bytes of a text literal, also those after a zero byte.
template <std::size_t size>
std::string Raw(char const (&text)[size])
{
    return std::string(text, size - 1);
}

/// StoredBytes and LoadBytes with the bytes as a text.
template <typename Store>
std::string Stored(std::uint32_t schema, Store const& store)
{
    Bytes const bytes = StoredBytes(schema, store);
    return std::string(bytes.begin(), bytes.end());
}

template <typename Load>
int CauseOfLoad(std::uint32_t schema, std::string const& bytes, Load const& load)
{
    return LoadBytes(schema, Bytes(bytes.begin(), bytes.end()), load);
}

/// Objects from the least to the greatest, none equal to another.
template <typename Objects>
void ExpectAscending(Objects const& fromLeast)
{
    for (auto const& left : fromLeast) {
        for (auto const& right : fromLeast) {
            EXPECT_EQ(left < right, &left < &right);
            EXPECT_EQ(left == right, &left == &right);
            EXPECT_NE(left == right, left != right);
        }
    }
}

/// A strict weak order, whose ties are the equal objects.
template <typename Objects>
void ExpectStrictWeakOrder(Objects const& all)
{
    auto const tie = [](auto const& left, auto const& right) {
        return !(left < right) && !(right < left);
    };
    for (auto const& a : all) {
        for (auto const& b : all) {
            ASSERT_TRUE(!(a < b && b < a) && tie(a, b) == (a == b));
            for (auto const& c : all) {
                ASSERT_TRUE((!(a < b && b < c) || a < c) && (!(tie(a, b) && tie(b, c)) || tie(a, c)));
            }
        }
    }
}

} // namespace VorlaneTest

#endif
