#include "vorlane/numerics/Random.h"

#include "gtest/gtest.h"

#include <cmath>
#include <cstdint>

using namespace Vorlane;

namespace {

/// The streams by arithmetic on whole numbers instead of bits.
class Model
{
public:
    explicit Model(std::uint64_t seed) : m_state(seed % modulus) {}

    int Integer()
    {
        m_state = (m_state * 1103515245 + 12345) % modulus;
        return static_cast<int>(m_state / 65536 % 32768);
    }

    double Uniform(double lower, double upper) { return Integer() * (upper - lower) / 32767 + lower; }

    double Normal(double mean, double deviation)
    {
        double x = 0, s = 2;
        while (s > 1) {
            x = 2 * Uniform(0, 1) - 1;
            double const y = 2 * Uniform(0, 1) - 1;
            s = y * y + x * x;
        }
        return std::sqrt(std::log(s) * -2 / s) * x * deviation + mean;
    }

private:
    static constexpr std::uint64_t modulus = std::uint64_t{1} << 32;

    std::uint64_t m_state;
};

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

void ExpectPoint(Spatia::Point3d const& point, double x, double y, double z)
{
    EXPECT_EQ(point.x, x);
    EXPECT_EQ(point.y, y);
    EXPECT_EQ(point.z, z);
}

} // namespace

TEST(RandomTest, StreamsAreThoseOfTheModel)
{
    EXPECT_EQ(RandomInteger()(), 16838);
    struct Row
    {
        unsigned long seed;
        double lower, upper; // may be equal or the wrong way round
    } const rows[] = {{0, -2.5, 7},         {1, 0, 1}, {7, 2, 2}, {123456789, 1, -1}, {0xFFFFFFFF, 0, 1e300},
                      {0x500000007, 3, 3.5}};
    for (auto const& [seed, lower, upper] : rows) {
        RandomInteger integers(seed), uniformSource(seed), normalSource(seed);
        UniformRandomSequence uniform(uniformSource, lower, upper);
        NormalRandomSequence normal(normalSource, 3.0, 0.5);
        Model integerModel(seed), uniformModel(seed), normalModel(seed);
        for (int i = 0; i < 100000; ++i) {
            ASSERT_EQ(integers(), integerModel.Integer()) << seed << ' ' << i;
            ASSERT_EQ(uniform(), uniformModel.Uniform(lower, upper)) << seed << ' ' << i;
            ASSERT_EQ(normal(), normalModel.Normal(3.0, 0.5)) << seed << ' ' << i;
        }
        EXPECT_EQ(integers.GetFirstSeed(), seed & 0xFFFFFFFFu);
        EXPECT_LE(integers.GetNextSeed(), 0xFFFFFFFFu);
    }
}

TEST(RandomTest, SeedsReplayTheStream)
{
    RandomInteger generator(5);
    RandomInteger copy(generator);
    int const first = generator();
    unsigned long const state = generator.GetNextSeed();
    int const second = generator();
    generator.SetNextSeed(state + (1ul << 32));
    EXPECT_EQ(generator.GetNextSeed(), state);
    EXPECT_EQ(generator.GetFirstSeed(), 5u);
    EXPECT_EQ(generator(), second);
    generator.Reset();
    EXPECT_EQ(generator(), first);
    EXPECT_EQ(copy(), first);
    copy = RandomInteger(state);
    EXPECT_EQ(copy(), second);
    EXPECT_EQ(copy.GetFirstSeed(), state);
}

TEST(RandomTest, DefaultSequencesShareOneGenerator)
{
    unsigned long const before = RandomInteger::SetDefaultSeed((1ul << 32) + 1);
    EXPECT_EQ(RandomInteger::GetDefaultSeed(), 1u);
    UniformRandomSequence uniform(0.0, 32767.0);
    EXPECT_EQ(uniform(), 16838.0);
    EXPECT_EQ(RandomInteger::GetDefaultSeed(), 1103527590u);
    UniformRandomSequence copy(uniform);
    EXPECT_EQ(copy(), 5758.0);
    EXPECT_EQ(uniform(), 10113.0);
    EXPECT_EQ(UniformRandomSequence()(), 17515.0 / 32767.0);
    EXPECT_EQ(RandomInteger()(), 16838);

    Model model(1103527590);
    RandomInteger::SetDefaultSeed(1103527590);
    EXPECT_EQ(NormalRandomSequence()(), model.Normal(0, 1));
    // x, y and z are drawn in this order.
    Spatia::Point3d const point = Random();
    double const x = model.Uniform(-1, 1), y = model.Uniform(-1, 1);
    ExpectPoint(point, x, y, model.Uniform(-1, 1));

    EXPECT_NEAR(Randomize(Spatia::Point3d(3, 4, 0)).Length(), 5, 1e-14);
    for (int i = 0; i < 3; ++i) {
        model.Integer();
    }
    double const x0 = model.Uniform(-1, 1), y0 = model.Uniform(-1, 1);
    ExpectPoint(Randomize(Spatia::Point3d()), x0, y0, model.Uniform(-1, 1));
    RandomInteger::SetDefaultSeed(before);
}

TEST(RandomTest, DerivedGeneratorsSetTheScale)
{
    NarrowRandomInteger generator;
    UniformRandomSequence uniform(generator, 0.0, 1.0);
    EXPECT_EQ(uniform(), static_cast<double>(0xFFFFFFFF00000002u % 9) / 8.0);
    EXPECT_EQ(generator.GetNextSeed(), 2u);
    UniformRandomSequence zeros(generator, 0.0, 0.0);
    ExpectPoint(Randomize(Spatia::Point3d(1, 2, 3), zeros), 0, 0, 0);
}

TEST(RandomTest, TheBaseGivesZero)
{
    struct Sequence : RandomSequence
    {
        double operator()() override { return RandomSequence::operator()(); }
    } sequence;
    EXPECT_EQ(sequence(), 0.0);
}
