#ifndef VORLANE_TESTS_SUPPORT_SEED_H
#define VORLANE_TESTS_SUPPORT_SEED_H

#include <cstdint>
#include <random>
#include <string>

namespace VorlaneTest {

/// A random engine whose seed is printed with a failing test: the environment variable VORLANE_TEST_SEED if
/// it is set, else a fixed number, so that a run can be repeated.
class SeededEngine : public std::mt19937_64
{
public:
    SeededEngine();

    /// For SCOPED_TRACE: "VORLANE_TEST_SEED=...".
    std::string Describe() const;

    /// A number from `low` to `high`, both included.
    int Integer(int low, int high);

    /// A number from `low` up to, but not including, `high`.
    double Real(double low, double high);

private:
    explicit SeededEngine(std::uint64_t seed);

    std::uint64_t m_seed;
};

} // namespace VorlaneTest

#endif
