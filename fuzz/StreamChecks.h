#ifndef VORLANE_FUZZ_STREAMCHECKS_H
#define VORLANE_FUZZ_STREAMCHECKS_H

#include "fuzz/Require.h"
#include "vorlane/numerics/Random.h"

#include <cmath>
#include <cstdint>

namespace VorlaneFuzz {

/// The streams by arithmetic on whole numbers instead of bits.
class StreamModel
{
public:
    explicit StreamModel(std::uint64_t seed) : m_firstSeed(seed % modulus), m_state(m_firstSeed) {}

    std::uint64_t GetFirstSeed() const { return m_firstSeed; }
    std::uint64_t GetNextSeed() const { return m_state; }
    void SetNextSeed(std::uint64_t seed) { m_state = seed % modulus; }

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

    Spatia::Point3d Point()
    {
        double const x = Uniform(-1, 1), y = Uniform(-1, 1);
        return {x, y, Uniform(-1, 1)};
    }

private:
    static constexpr std::uint64_t modulus = std::uint64_t{1} << 32;

    std::uint64_t m_firstSeed;
    std::uint64_t m_state;
};

/// The first numbers of each stream, with bounds that may be equal or the wrong way round.
inline void CheckStreams(unsigned long seed, double lower, double upper, int count)
{
    Vorlane::RandomInteger integers(seed), uniformSource(seed), normalSource(seed);
    Vorlane::UniformRandomSequence uniform(uniformSource, lower, upper);
    Vorlane::NormalRandomSequence normal(normalSource, lower, upper);
    StreamModel integerModel(seed), uniformModel(seed), normalModel(seed);
    for (int i = 0; i < count; ++i) {
        Require(integers() == integerModel.Integer());
        Require(uniform() == uniformModel.Uniform(lower, upper));
        Require(normal() == normalModel.Normal(lower, upper));
    }
}

} // namespace VorlaneFuzz

#endif
