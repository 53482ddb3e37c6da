#ifndef VORLANE_NUMERICS_RANDOM_H
#define VORLANE_NUMERICS_RANDOM_H

/// \file
/// Reproducible random numbers: a generator of integers, sequences of doubles drawn from it, and random
/// points.
///
/// All sequences that are not given a generator share one, the default generator, which starts with the seed
/// 1 when the library is loaded; each draw changes it for all of them. Nothing here locks: a generator, the
/// default one included, is used from one thread at a time.

#include "vorlane/Export.h"
#include "vorlane/foundation/ValueTypes.h"

namespace Vorlane {

/// A linear congruential generator on 32 bits: the seed s is followed by 1103515245 s + 12345, whose bits 16
/// to 30 are the number drawn, as in the example of `rand` in the C standard. Seeds are taken modulo 2 to the
/// power of 32.
///
/// The stream follows from the next seed alone: setting it to a value read earlier replays the stream from
/// there.
class VORLANE_EXPORT RandomInteger
{
public:
    /// The stream of `seed`, independent of the default generator.
    RandomInteger(unsigned long seed = 1);

    /// A copy continues the stream on its own.
    RandomInteger(RandomInteger const&) = default;
    RandomInteger& operator=(RandomInteger const&) = default;
    virtual ~RandomInteger();

    /// Draws the next number, from 0 to GetMaximumValue().
    int operator()();

    /// The largest number that can be drawn: 32767. A class that draws others gives its own, which must not
    /// be 0: uniform sequences divide by it.
    virtual int GetMaximumValue() const;

    /// The seed that Reset returns to.
    unsigned long GetFirstSeed() const { return m_firstSeed; }

    /// The seed that the next number is computed from.
    unsigned long GetNextSeed() const { return m_nextSeed; }

    /// Starts the stream anew from the first seed.
    void Reset() { m_nextSeed = m_firstSeed; }

    /// Goes on from `seed`; the first seed stays.
    void SetNextSeed(unsigned long seed);

    /// The running state of the default generator: 1 in a fresh library, then the next seed after each draw.
    static unsigned long GetDefaultSeed();

    /// Lets the default generator go on from `seed`, and gives the state it had.
    static unsigned long SetDefaultSeed(unsigned long seed);

private:
    /// Advances `seed`, which is 32 bits wide, and gives the number that belongs to its new value.
    virtual int CalcRandomNumber(unsigned long& seed);

    unsigned long m_firstSeed;
    unsigned long m_nextSeed;
};

/// The base of sequences of random doubles.
class VORLANE_EXPORT RandomSequence
{
public:
    RandomSequence() = default;
    RandomSequence(RandomSequence const&) = default;
    RandomSequence& operator=(RandomSequence const&) = default;
    virtual ~RandomSequence();

    /// Draws the next number. The definition of this class gives 0.0.
    virtual double operator()() = 0;
};

/// Numbers between two bounds, both included, in steps of the distance divided by the generator's maximum.
class VORLANE_EXPORT UniformRandomSequence : public RandomSequence
{
public:
    /// Draws from the default generator. Bounds the wrong way round give numbers between them all the same.
    UniformRandomSequence(double lower = 0.0, double upper = 1.0);

    /// Draws from `generator`, which must outlive the sequence and its copies, as they all share it.
    UniformRandomSequence(RandomInteger& generator, double lower, double upper);

    UniformRandomSequence(UniformRandomSequence const&) = default;
    UniformRandomSequence& operator=(UniformRandomSequence const&) = default;
    ~UniformRandomSequence() override;

    /// `lower` + r·(`upper` − `lower`)/M for the generator's next number r and its maximum M.
    double operator()() override;

private:
    RandomInteger* m_generator;
    double m_upper;
    double m_lower;
};

/// Normally distributed numbers, by the polar method: G. Marsaglia, T. A. Bray, "A convenient method for
/// generating normal variables", SIAM Review 6 (1964).
class VORLANE_EXPORT NormalRandomSequence : public RandomSequence
{
public:
    /// Draws from the default generator.
    NormalRandomSequence(double mean = 0.0, double deviation = 1.0);

    /// Draws from `generator`, which must outlive the sequence and its copies, as they all share it.
    NormalRandomSequence(RandomInteger& generator, double mean, double deviation);

    NormalRandomSequence(NormalRandomSequence const&) = default;
    NormalRandomSequence& operator=(NormalRandomSequence const&) = default;
    ~NormalRandomSequence() override;

    /// The next number; each takes two numbers, or four, six and so on, from the generator. NaN if a foreign
    /// generator draws twice the exact half of its maximum.
    double operator()() override;

private:
    UniformRandomSequence m_uniform;
    double m_mean;
    double m_deviation;
};

/// A point whose x, y and z are drawn from `sequence` in this order.
VORLANE_EXPORT Spatia::Point3d Random(RandomSequence& sequence);

/// A point of the cube from -1 to 1, drawn from the default generator.
VORLANE_EXPORT Spatia::Point3d Random();

/// A point as far from the origin as `point`, in the direction of Random(`sequence`). If `point` is the
/// origin, the result is that random point as it is; if the random point is the origin, so is the result.
VORLANE_EXPORT Spatia::Point3d Randomize(Spatia::Point3d const& point, RandomSequence& sequence);

/// A point as far from the origin as `point`, in the direction of Random(). Directions follow the shape of
/// the cube: they are denser towards its corners.
VORLANE_EXPORT Spatia::Point3d Randomize(Spatia::Point3d const& point);

} // namespace Vorlane

#endif
