#ifndef VORLANE_TESTS_SUPPORT_ALLOCATIONFAILURE_H
#define VORLANE_TESTS_SUPPORT_ALLOCATIONFAILURE_H

/// \file
/// Memory that runs out when a test wants it to. The switch covers operator new everywhere, and malloc,
/// calloc and realloc of the code that is linked into the test program: the libraries' objects and the tests,
/// not shared libraries. A test program gets it by
///
///     target_link_libraries(platform_tests PRIVATE vorlane_allocation_failure)
///
/// and then
///
///     CString text;
///     int const failures = ForEachFailedAllocation([&] { text = "value"; },           // before each attempt
///                                                  [&] { text += longText; },         // raises
///                                                  CMemoryException
///                                                  [&] { EXPECT_EQ(text, "value"); }); // after it
///     EXPECT_GT(failures, 0);
///
/// or an AllocationFailure or AllocationLimit of its own. Each thread has its own switch. The thread
/// sanitizer keeps operator new for itself: tests that need the switch say Memory in their names, and its
/// preset leaves them out.

#include "platform/framework/AfxExceptions.h"

#include <cstddef>
#include <limits>

namespace VorlaneTest {

/// What the objects below set, and what operator new and the others look at.
struct AllocationSwitch
{
    int granted = -1; ///< how many allocations succeed before the one that fails; below 0 none fails
    std::size_t largest = std::numeric_limits<std::size_t>::max();
    std::size_t allocated = 0;
};
inline thread_local AllocationSwitch allocationSwitch;

/// Lets one allocation of this thread fail while the object lives: the one after the next `precedingCount`.
class AllocationFailure
{
public:
    explicit AllocationFailure(int precedingCount) { allocationSwitch.granted = precedingCount; }
    ~AllocationFailure() { allocationSwitch.granted = -1; }
    AllocationFailure(AllocationFailure const&) = delete;

    /// Whether that allocation has been asked for, and refused.
    bool HasHappened() const { return allocationSwitch.granted < 0; }
};

/// Refuses every allocation of this thread beyond `bytes` in one piece while the object lives.
class AllocationLimit
{
public:
    explicit AllocationLimit(std::size_t bytes) { allocationSwitch.largest = bytes; }
    ~AllocationLimit() { allocationSwitch.largest = AllocationSwitch().largest; }
    AllocationLimit(AllocationLimit const&) = delete;
};

/// What this thread took with operator new and has not given back, in bytes; take the difference of two.
inline std::size_t GetAllocatedBytes()
{
    return allocationSwitch.allocated;
}

/// Runs `operation` with its first, second, ... allocation failing, until it gets through without meeting the
/// failure. `prepare` runs before each attempt, `check` after each that ended in CMemoryException. Gives the
/// number of attempts that met their failure, whether they raised or could do without the memory.
template <typename Prepare, typename Operation, typename Check>
int ForEachFailedAllocation(Prepare prepare, Operation operation, Check check)
{
    for (int failures = 0;; ++failures) {
        prepare();
        bool hasHappened = false;
        bool hasRaised = false;
        {
            AllocationFailure const failure(failures);
            try {
                operation();
            } catch (CMemoryException const&) {
                hasRaised = true;
            }
            hasHappened = failure.HasHappened();
        }
        if (hasRaised) {
            check();
        }
        if (!hasHappened) {
            return failures;
        }
    }
}

} // namespace VorlaneTest

#endif
