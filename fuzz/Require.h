#ifndef VORLANE_FUZZ_REQUIRE_H
#define VORLANE_FUZZ_REQUIRE_H

#include <stdexcept>

namespace VorlaneFuzz {

/// What does not hold ends a fuzz target, and fails a test that makes the same check of inputs of its own.
inline void Require(bool condition)
{
    if (!condition) {
        throw std::logic_error("a requirement does not hold");
    }
}

} // namespace VorlaneFuzz

#endif
