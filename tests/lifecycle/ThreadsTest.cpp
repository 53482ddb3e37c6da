// Distinct objects on distinct threads, where the library allows it, and first uses of the constant tables
// from several threads at once. The tests mean most under the thread sanitizer, each in a process of its own.

#include "tests/lifecycle/EveryFamily.h"

#include "gtest/gtest.h"

#include <atomic>
#include <thread>
#include <vector>

namespace {

/// Runs `work` on several threads that start together.
template <typename Work>
void OnSeveralThreads(Work const& work)
{
    constexpr int threadCount = 4;
    std::atomic<int> waiting{threadCount};
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&] {
            for (--waiting; waiting > 0;) {
            }
            work();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace

TEST(ThreadsTest, DistinctObjectsOfEveryFamilyWorkOnDistinctThreads)
{
    OnSeveralThreads([] {
        for (int round = 0; round < 20; ++round) {
            VorlaneTest::Failures failures;
            VorlaneTest::UseEveryFamily(failures);
            EXPECT_EQ(failures.text, "");
        }
    });
}

TEST(ThreadsTest, TextsThatShareStorageLiveOnDistinctThreads)
{
    CString const shared("a text that is long enough to be shared by all of the threads");
    OnSeveralThreads([&] {
        for (int round = 0; round < 200; ++round) {
            CString text(shared);
            for (CString rest = text; !rest.IsEmpty(); rest = rest.Mid(7)) {
                EXPECT_GT(rest.GetLength(), 0);
            }
            text += "!";
            EXPECT_EQ(text.GetLength(), shared.GetLength() + 1);
        }
    });
    EXPECT_EQ(shared, "a text that is long enough to be shared by all of the threads");
}
