#ifndef VORLANE_TESTS_COLOUR_COLOURTESTING_H
#define VORLANE_TESTS_COLOUR_COLOURTESTING_H

#include "tests/support/ArchivedBytes.h"

#include <cstddef>
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

/// Objects in pairs of equals, the pairs from the least to the greatest. An order that agrees with the ranks
/// is a strict weak one.
template <typename Objects>
void ExpectRankedPairs(Objects const& all)
{
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (std::size_t j = 0; j < all.size(); ++j) {
            ASSERT_EQ(all[i] < all[j], i / 2 < j / 2) << i << " and " << j;
            ASSERT_EQ(all[i] == all[j], i / 2 == j / 2) << i << " and " << j;
            ASSERT_EQ(all[i] != all[j], i / 2 != j / 2) << i << " and " << j;
        }
    }
}

} // namespace VorlaneTest

#endif
