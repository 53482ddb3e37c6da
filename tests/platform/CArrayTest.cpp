#include "tests/support/AllocationFailure.h"
#include "tests/support/CaseTable.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include "gtest/gtest.h"

#include <algorithm>
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

TEST(CArrayTest, CapacityGrowsByTheRule)
{
    for (VorlaneTest::Case const& row : VorlaneTest::ReadCases("platform/growth.txt", "growth")) {
        SCOPED_TRACE(row.at("where"));
        auto const number = [&](char const* column) {
            return std::stoi(row.at(column));
        };
        Ints array;
        array.SetSize(number("first"), number("step"));
        EXPECT_EQ(array.GetCapacity(), std::max(number("first"), number("step")));
        array.SetSize(number("second"), -1);
        EXPECT_EQ(array.GetData() == nullptr, number("second") == 0);
        array.SetSize(number("third"), -1);
        EXPECT_EQ(array.GetCapacity(), number("capacity"));
        EXPECT_EQ(array.GetSize(), number("third"));
    }
}

TEST(CArrayTest, ExposedElementsAreNewAgain)
{
    Ints array;
    array.SetSize(3, 5);
    array[0] = array[2] = 9;
    int const* const storage = array.GetData();
    array.SetSize(1, -1);
    array.SetSize(5, -1);
    EXPECT_EQ(array.GetData(), storage);
    EXPECT_TRUE(array[0] == 9 && array[2] == 0);
    array.SetAtGrow(20, 1);
    EXPECT_EQ(array[19], 0);
}

TEST(CArrayTest, RefusesIndexesAndSizesOutOfRange)
{
    Ints array;
    array.SetSize(3, INT_MAX - 1); // so that the sum of capacity and step overflows in the last row
    array.SetSize(3, 0);
    std::function<void()> const operations[] = {
        [&] { array.GetAt(-1); },
        [&] { array[3]; },
        [&] { array.SetAt(3, 1); },
        [&] { array.SetSize(-1, 4); },
        [&] { array.SetAtGrow(-1, 1); },
        [&] { array.SetAtGrow(INT_MAX, 1); },
        [&] { array.SetSize(INT_MAX, INT_MAX); },
    };
    for (auto const& operation : operations) {
        EXPECT_THROW(operation(), CInvalidArgException) << &operation - operations;
        EXPECT_EQ(array.GetSize(), 3);
    }
}

TEST(CArrayTest, CopiesAndTakesItsOwnElements)
{
    CArray<int, int const&> numbers;
    CStringArray texts;
    CArray<CString, char const*> byBytes; // whose arguments point into elements
    numbers.Add(41);
    texts.Add("text");
    byBytes.Add("short");
    for (int i = 1; i < 1000; ++i) {
        EXPECT_EQ(numbers.Add(numbers[0]), i);
        texts.Add(texts[0]);
        byBytes.Add(byBytes[0]);
        EXPECT_TRUE(numbers[i] == 41 && texts[i] == "text" && byBytes[i] == "short") << i;
    }
    numbers.SetAtGrow(100000, numbers[0]); // whose place is given back meanwhile
    CArray<int, int const&> numbersBefore;
    numbersBefore.SetSize(2, 3);
    numbersBefore.Copy(numbers);
    numbersBefore.Copy(numbersBefore);
    numbers[100000] = 0;
    ASSERT_EQ(numbersBefore.GetSize(), 100001);
    EXPECT_EQ(numbersBefore[100000], 41);
    CStringArray textsBefore;
    textsBefore.Copy(texts);
    texts[999] += " changed";
    EXPECT_EQ(textsBefore[999], "text");
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
