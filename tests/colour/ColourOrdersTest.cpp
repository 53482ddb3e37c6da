#include "tests/colour/ColourTesting.h"

#include "gtest/gtest.h"

#include <limits>
#include <utility>

using namespace VorlaneTest;

namespace {

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

} // namespace

TEST(ColourOrdersTest, SpectraTakeNameSizeMarkAndFlagsInTurn)
{
    std::vector<CustomColorSpectrum> all; // each beside its equal with other case and colours
    for (auto const& [name, sameName] : {std::pair("", ""), {"Ab", "aB"}, {"b", "B"}, {"\xE9", "\xE9"}}) {
        for (auto const& flags : {std::vector{"--", "-x", "x-", "xx"}, {"---", "--x", "-xx", "x--", "xx-"}}) {
            for (bool const editable : {false, true}) {
                for (char const* each : flags) {
                    all.push_back(SpectrumOf(name, each, editable, red));
                    all.push_back(SpectrumOf(sameName, each, editable, blue));
                }
            }
        }
    }
    ExpectRankedPairs(all);
}

TEST(ColourOrdersTest, ParametersTakeTheirKeysInTurn)
{
    double const infinite = std::numeric_limits<double>::infinity();
    double const none = std::numeric_limits<double>::quiet_NaN();
    std::vector<ColorMapParameters> all; // each beside its equal, with other case and zeros of the other sign
    for (auto const& [name, sameName] : {std::pair("", ""), {"Ab", "aB"}, {"b", "B"}}) {
        for (int key = 0; key < 18; ++key) {
            double const numbers[] = {-infinite, 0.0, 1.0};
            double const minimum = numbers[key / 3 % 3], maximum = numbers[key % 3];
            for (char const* bins : {"", "-", "x", "--", "-x", "x-", "xx", "---"}) {
                all.push_back(ParametersOf(name, key >= 9, minimum, maximum, bins));
                all.push_back(ParametersOf(sameName, key >= 9, minimum == 0 ? -0.0 : minimum, maximum, bins));
            }
        }
    }
    ExpectRankedPairs(all);
    // A NaN ties in the order, so that the next key decides, and equals nothing but its own object.
    auto const low = ParametersOf("n", false, none, 1, "x"), high = ParametersOf("n", false, 5, 2, "x"),
               top = ParametersOf("n", false, 0, none, "x"), more = ParametersOf("n", false, 0, 7, "xx");
    EXPECT_TRUE(low < high && high > low && !(high < low) && !(low > high) && !(high > high));
    EXPECT_TRUE(top < more && more > top && !(more < top));
    EXPECT_TRUE(low == low && !(low == ColorMapParameters(low)) && top != ColorMapParameters(top));
}
