#include "tests/support/AllocationFailure.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include "gtest/gtest.h"

#include <climits>
#include <functional>
#include <stdexcept>

namespace {

using Ints = CArray<int, int>;

/// Starts at 7, counts the living, and raises when asked to.
struct Counted
{
    Counted()
    {
        if (s_mayStillStart-- == 0) {
            throw std::runtime_error("no more");
        }
        ++s_living;
    }
    Counted(Counted const&) = delete;
    Counted& operator=(Counted const&) = default;
    ~Counted() { --s_living; }

    int m_value = 7;
    static int s_living;
    static int s_mayStillStart;
};

int Counted::s_living = 0;
int Counted::s_mayStillStart = INT_MAX;

} // namespace

TEST(CArrayTest, RefusesSizesBeyondThirtyTwoBits)
{
    Ints array;
    array.SetSize(3, 0);
    EXPECT_THROW(array.SetAtGrow(INT_MAX, 1), CInvalidArgException);
    EXPECT_THROW(array.SetSize(INT_MAX, INT_MAX), CInvalidArgException); // the sum of capacity and step
    EXPECT_EQ(array.GetSize(), 3);
}

TEST(CArrayTest, ElementsAreBuiltAndDestroyedOnce)
{
    {
        CArray<Counted, Counted const&> array;
        array.SetSize(5, -1);
        array[1].m_value = 1;
        array.SetSize(1, -1);
        EXPECT_EQ(Counted::s_living, 1);
        array.SetSize(300, -1);
        EXPECT_EQ(array[1].m_value, 7);
        Counted::s_mayStillStart = 2;
        EXPECT_THROW(array.SetSize(1000, -1), std::runtime_error);
        Counted::s_mayStillStart = INT_MAX;
        EXPECT_EQ(array.GetSize(), 300);
        EXPECT_EQ(Counted::s_living, 300);
    }
    EXPECT_EQ(Counted::s_living, 0);
}

TEST(CArrayTest, KeepsSizeAndElementsWhenMemoryRunsOut)
{
    Ints other;
    other.SetSize(100, -1);
    for (int const size : {0, 1}) {
        Ints array;
        std::function<void()> const operations[] = {
            [&] { array.SetSize(100, 2); },
            [&] { array.SetAtGrow(9, 1); },
            [&] { array.Copy(other); },
        };
        auto const check = [&] {
            EXPECT_EQ(array.GetSize(), size);
            EXPECT_EQ(array.GetCapacity(), size);
        };
        for (auto const& operation : operations) {
            array.SetSize(size, 0);
            EXPECT_EQ(VorlaneTest::ForEachFailedAllocation([] {}, operation, check), 1);
            array.RemoveAll();
        }
    }
    VorlaneTest::AllocationLimit const limit(1 << 20);
    EXPECT_THROW(Ints().SetSize(INT_MAX, 0), CMemoryException);
}
