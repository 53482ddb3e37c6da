#include "tests/support/AllocationFailure.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include "gtest/gtest.h"

#include <climits>
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
    Counted(Counted const& other) : m_value(other.m_value) { ++s_living; }
    Counted& operator=(Counted const&) = default;
    ~Counted() { --s_living; }

    int m_value = 7;
    static int s_living;
    static int s_mayStillStart;
};

int Counted::s_living = 0;
int Counted::s_mayStillStart = INT_MAX;

} // namespace

TEST(CArrayTest, CapacityGrowsByTheRule)
{
    struct Row
    {
        int firstSize;
        int growBy;
        int nextSize;
        int capacity;
    };
    Row const rows[] = {
        {10, 0, 10, 10},     {10, 0, 11, 14},       {47, 0, 48, 52},        {48, 0, 49, 54},
        {10, 0, 100, 100},   {8000, 0, 8001, 9000}, {9000, 0, 9001, 10024}, {9000, -1, 9001, 10024},
        {10, 1, 11, 11},     {10, 3, 11, 13},       {10, 100, 11, 100},     {100, 10, 111, 111},
        {100, 10, 101, 110},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(testing::Message() << row.firstSize << ", " << row.growBy << " to " << row.nextSize);
        Ints array;
        array.SetSize(row.firstSize, row.growBy);
        EXPECT_EQ(array.GetCapacity(), std::max(row.firstSize, row.growBy));
        array.SetSize(row.nextSize, -1);
        EXPECT_EQ(array.GetCapacity(), row.capacity);
        EXPECT_EQ(array.GetSize(), row.nextSize);
    }
    // The step is an eighth of the size, not of the capacity.
    Ints array;
    array.SetSize(8000, 0);
    array.SetSize(40, -1);
    array.SetSize(8001, -1);
    EXPECT_EQ(array.GetCapacity(), 8005);
}

TEST(CArrayTest, ExposedElementsAreNewAgain)
{
    Ints array;
    EXPECT_EQ(array.GetData(), nullptr);
    array.SetSize(3, 5);
    array[0] = array[2] = 9;
    int const* const storage = array.GetData();
    array.SetSize(1, -1);
    array.SetSize(5, -1);
    EXPECT_EQ(array.GetData(), storage);
    EXPECT_EQ(array[0], 9);
    EXPECT_EQ(array[2], 0);
    array.SetAtGrow(20, 1);
    EXPECT_EQ(array[19], 0);
    array.SetSize(0, -1);
    EXPECT_EQ(array.GetData(), nullptr);
    EXPECT_EQ(array.GetCapacity(), 0);
    array.SetSize(2, -1); // the growth argument has stayed
    EXPECT_EQ(array.GetCapacity(), 5);
    array.RemoveAll();
    EXPECT_TRUE(array.IsEmpty());
}

TEST(CArrayTest, RefusesIndexesAndSizesOutOfRange)
{
    Ints array;
    array.SetSize(3, -1);
    for (int const index : {-1, 3, INT_MIN, INT_MAX}) {
        EXPECT_THROW(array.GetAt(index), CInvalidArgException);
        EXPECT_THROW(array[index], CInvalidArgException);
        EXPECT_THROW(array.SetAt(index, 1), CInvalidArgException);
    }
    EXPECT_THROW(Ints()[0], CInvalidArgException);
    EXPECT_THROW(array.SetSize(-1, 4), CInvalidArgException);
    EXPECT_THROW(array.SetAtGrow(-1, 1), CInvalidArgException);
    EXPECT_THROW(array.SetAtGrow(INT_MAX, 1), CInvalidArgException);
    array.SetSize(3, INT_MAX);
    EXPECT_THROW(array.SetSize(4, -1), CInvalidArgException);
    EXPECT_EQ(array.GetSize(), 3);
    EXPECT_EQ(array.GetCapacity(), 3);
}

TEST(CArrayTest, CopiesAndTakesItsOwnElements)
{
    Ints array;
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(array.Add(i), i);
    }
    CArray<int, int const&> byReference;
    byReference.Add(41);
    for (int i = 1; i < 1000; ++i) {
        byReference.Add(byReference[0]);
    }
    EXPECT_EQ(byReference[999], 41);
    byReference.SetAtGrow(100000, byReference[999]);
    EXPECT_EQ(byReference[100000], 41);
    Ints copy;
    copy.SetSize(2, 3);
    copy.Copy(array);
    copy.Copy(copy);
    array[999] = 0;
    ASSERT_EQ(copy.GetSize(), 1000);
    EXPECT_EQ(copy[999], 999);
    copy.Copy(Ints());
    EXPECT_EQ(copy.GetData(), nullptr);
}

TEST(CArrayTest, ElementsAreBuiltAndDestroyedOnce)
{
    {
        CArray<Counted, Counted const&> array;
        array.SetSize(5, -1);
        EXPECT_EQ(array[4].m_value, 7);
        array[1].m_value = 1;
        array.SetSize(1, -1);
        EXPECT_EQ(Counted::s_living, 1);
        array.SetSize(300, -1);
        EXPECT_EQ(array[1].m_value, 7);
        array[0].m_value = 3;
        array.Add(array[0]);
        EXPECT_EQ(array[300].m_value, 3);
        EXPECT_EQ(Counted::s_living, 301);
        Counted::s_mayStillStart = 2;
        EXPECT_THROW(array.SetSize(1000, -1), std::runtime_error);
        Counted::s_mayStillStart = INT_MAX;
        EXPECT_EQ(array.GetSize(), 301);
        EXPECT_EQ(Counted::s_living, 301);
    }
    EXPECT_EQ(Counted::s_living, 0);
}

TEST(CArrayTest, KeepsSizeAndElementsWhenMemoryRunsOut)
{
    Ints array;
    auto const prepare = [&] {
        array.RemoveAll();
        array.Add(5);
    };
    auto const check = [&] {
        ASSERT_EQ(array.GetSize(), 1);
        EXPECT_EQ(array[0], 5);
    };
    Ints other;
    other.SetSize(100, -1);
    EXPECT_EQ(VorlaneTest::ForEachFailedAllocation(
                  prepare, [&] { array.SetSize(100, 2); }, check),
              1);
    EXPECT_EQ(VorlaneTest::ForEachFailedAllocation(
                  prepare, [&] { array.SetAtGrow(9, 1); }, check),
              1);
    EXPECT_EQ(VorlaneTest::ForEachFailedAllocation(
                  prepare, [&] { array.Copy(other); }, check),
              1);
    Ints empty;
    VorlaneTest::AllocationLimit const limit(1 << 20);
    EXPECT_THROW(empty.SetSize(INT_MAX, 0), CMemoryException);
    EXPECT_EQ(empty.GetData(), nullptr);
    CArray<double, double> large;
    large.SetSize(1, -1);
    EXPECT_THROW(large.SetSize(INT_MAX, -1), CMemoryException);
    EXPECT_EQ(large.GetSize(), 1);
}

TEST(CStringArrayTest, HoldsTexts)
{
    CStringArray texts;
    texts.SetSize(2, -1);
    texts.SetAtGrow(3, "three");
    for (int i = 4; i < 200; ++i) {
        texts.Add(texts[3]);
    }
    CStringArray copy;
    copy.Copy(texts);
    texts[3] += " changed";
    EXPECT_EQ(copy.GetSize(), 200);
    EXPECT_EQ(copy.GetAt(3), "three");
    EXPECT_EQ(copy[0], "");
    EXPECT_THROW(copy[200], CInvalidArgException);
}
