#include "tests/support/Seed.h"

#include <cstdlib>

namespace VorlaneTest {

namespace {

std::uint64_t ChosenSeed()
{
    char const* const chosen = std::getenv("VORLANE_TEST_SEED");
    return chosen != nullptr ? std::strtoull(chosen, nullptr, 10) : 20260101u;
}

} // namespace

SeededEngine::SeededEngine() : SeededEngine(ChosenSeed()) {}

SeededEngine::SeededEngine(std::uint64_t seed) : std::mt19937_64(seed), m_seed(seed) {}

std::string SeededEngine::Describe() const
{
    return "VORLANE_TEST_SEED=" + std::to_string(m_seed);
}

int SeededEngine::Integer(int low, int high)
{
    return std::uniform_int_distribution<int>(low, high)(*this);
}

double SeededEngine::Real(double low, double high)
{
    return std::uniform_real_distribution<double>(low, high)(*this);
}

} // namespace VorlaneTest
