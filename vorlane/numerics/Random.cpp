#include "vorlane/numerics/RandomInternal.h"

#include <cmath>
#include <cstdint>
#include <utility>

namespace Vorlane {

namespace {

unsigned long To32Bits(unsigned long value)
{
    return static_cast<std::uint32_t>(value);
}

} // namespace

RandomInteger::RandomInteger(unsigned long seed) : m_firstSeed(To32Bits(seed)), m_nextSeed(m_firstSeed) {}

RandomInteger::~RandomInteger() = default;

int RandomInteger::operator()()
{
    int const number = CalcRandomNumber(m_nextSeed);
    m_nextSeed = To32Bits(m_nextSeed);
    return number;
}

int RandomInteger::GetMaximumValue() const
{
    return 32767;
}

void RandomInteger::SetNextSeed(unsigned long seed)
{
    m_nextSeed = To32Bits(seed);
}

unsigned long RandomInteger::GetDefaultSeed()
{
    return defaultGenerator.GetNextSeed();
}

unsigned long RandomInteger::SetDefaultSeed(unsigned long seed)
{
    unsigned long const previous = defaultGenerator.GetNextSeed();
    defaultGenerator.SetNextSeed(seed);
    return previous;
}

int RandomInteger::CalcRandomNumber(unsigned long& seed)
{
    std::uint32_t const next = static_cast<std::uint32_t>(seed) * 1103515245u + 12345u;
    seed = next;
    return static_cast<int>((next >> 16) & 0x7FFFu);
}

RandomSequence::~RandomSequence() = default;

double RandomSequence::operator()()
{
    return 0.0;
}

UniformRandomSequence::UniformRandomSequence(double lower, double upper)
    : UniformRandomSequence(defaultGenerator, lower, upper)
{}

UniformRandomSequence::UniformRandomSequence(RandomInteger& generator, double lower, double upper)
    : m_generator(&generator), m_upper(upper), m_lower(lower)
{}

UniformRandomSequence::~UniformRandomSequence() = default;

double UniformRandomSequence::operator()()
{
    double const range = m_upper - m_lower;
    int const number = (*m_generator)();
    return (number * range) / m_generator->GetMaximumValue() + m_lower;
}

NormalRandomSequence::NormalRandomSequence(double mean, double deviation)
    : NormalRandomSequence(defaultGenerator, mean, deviation)
{}

NormalRandomSequence::NormalRandomSequence(RandomInteger& generator, double mean, double deviation)
    : m_uniform(generator, 0.0, 1.0), m_mean(mean), m_deviation(deviation)
{}

NormalRandomSequence::~NormalRandomSequence() = default;

double NormalRandomSequence::operator()()
{
    for (;;) {
        double const x = 2.0 * m_uniform() - 1.0;
        double const y = 2.0 * m_uniform() - 1.0;
        double const s = y * y + x * x;
        if (!(s > 1.0)) {
            return std::sqrt(std::log(s) * -2.0 / s) * x * m_deviation + m_mean;
        }
    }
}

Spatia::Point3d Random(RandomSequence& sequence)
{
    // Three statements: the order in which arguments are evaluated is open.
    Spatia::Point3d point;
    point.x = sequence();
    point.y = sequence();
    point.z = sequence();
    return point;
}

Spatia::Point3d Random()
{
    UniformRandomSequence sequence(-1.0, 1.0);
    return Random(sequence);
}

Spatia::Point3d Randomize(Spatia::Point3d const& point, RandomSequence& sequence)
{
    Spatia::Point3d direction = Random(sequence);
    double const length = point.Length();
    if (length > 0.0) {
        direction.ChangeLength(length);
    }
    return direction;
}

Spatia::Point3d Randomize(Spatia::Point3d const& point)
{
    UniformRandomSequence sequence(-1.0, 1.0);
    return Randomize(point, sequence);
}

} // namespace Vorlane
