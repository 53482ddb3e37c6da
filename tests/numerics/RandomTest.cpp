#include "vorlane/numerics/Random.h"

#include "gtest/gtest.h"

#include "fuzz/StreamChecks.h"

using namespace Vorlane;

namespace {

/// Draws from 0 to 8 and makes seeds wider than 32 bits.
class NarrowRandomInteger : public RandomInteger
{
public:
    int GetMaximumValue() const override { return 8; }

private:
    int CalcRandomNumber(unsigned long& seed) override
    {
        seed += 0xFFFFFFFF00000001u;
        return static_cast<int>(seed % 9);
    }
};

} // namespace

TEST(RandomTest, StreamsAreThoseOfTheModel)
{
    EXPECT_EQ(RandomInteger()(), 16838);
    struct Row
    {
        unsigned long seed;
        double lower, upper;
    } const rows[] = {{0, -2.5, 7},         {1, 0, 1}, {7, 2, 2}, {123456789, 1, -1}, {0xFFFFFFFF, 0, 1e300},
                      {0x500000007, 3, 3.5}};
    for (auto const& [seed, lower, upper] : rows) {
        EXPECT_NO_THROW(VorlaneFuzz::CheckStreams(seed, lower, upper, 100000)) << seed;
    }
}

TEST(RandomTest, DerivedGeneratorsSetTheScale)
{
    NarrowRandomInteger generator;
    UniformRandomSequence uniform(generator, 0.0, 1.0);
    EXPECT_EQ(uniform(), static_cast<double>(0xFFFFFFFF00000002u % 9) / 8.0);
    EXPECT_EQ(generator.GetNextSeed(), 2u);
    UniformRandomSequence zeros(generator, 0.0, 0.0);
    EXPECT_EQ(Randomize(Spatia::Point3d(1, 2, 3), zeros).Length(), 0);
}

TEST(RandomTest, TheBaseGivesZero)
{
    struct Sequence : RandomSequence
    {
        double operator()() override { return RandomSequence::operator()(); }
    } sequence;
    EXPECT_EQ(sequence(), 0.0);
}
