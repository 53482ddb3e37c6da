#ifndef VORLANE_TESTS_SUPPORT_SEED_H
#define VORLANE_TESTS_SUPPORT_SEED_H

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

namespace VorlaneTest {

/// A random engine whose seed is printed with a failing test: the environment variable VORLANE_TEST_SEED if
/// it is set, else a fixed number, so that a run can be repeated.
class SeededEngine : public std::mt19937_64
{
public:
    SeededEngine()
    {
        if (char const* const chosen = std::getenv("VORLANE_TEST_SEED")) {
            m_seed = std::strtoull(chosen, nullptr, 10);
        }
        seed(m_seed);
    }

    /// For SCOPED_TRACE: "VORLANE_TEST_SEED=...".
    std::string Describe() const { return "VORLANE_TEST_SEED=" + std::to_string(m_seed); }

    /// A number from `low` to `high`, both included.
    int Integer(int low, int high) { return std::uniform_int_distribution<int>(low, high)(*this); }

    /// A number from `low` up to, but not including, `high`.
    double Real(double low, double high) { return std::uniform_real_distribution<double>(low, high)(*this); }

private:
    std::uint64_t m_seed = 20260101;
};

} // namespace VorlaneTest

#endif
