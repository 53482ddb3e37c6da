#include "vorlane/foundation/TypedArrays.h"

#include "gtest/gtest.h"

using Vorlane::BoolArray;
using Vorlane::DoubleArray;
using Vorlane::IntArray;

TEST(TypedArraysTest, ConstructorSetsSizeZerosAndGrowth)
{
    IntArray const ten(10, 0);
    ASSERT_EQ(ten.GetSize(), 10);
    EXPECT_EQ(ten[9], 0);
    IntArray grown(ten);
    grown = ten;
    grown.Add(1);
    EXPECT_EQ(grown.GetCapacity(), 14);
    // A growth below 1 becomes 1; a size below 1 leaves the growth alone.
    IntArray byOne(10, -5);
    byOne.Add(1);
    EXPECT_EQ(byOne.GetCapacity(), 11);
    DoubleArray unsized(0, 5);
    EXPECT_EQ(unsized.GetData(), nullptr);
    unsized.Add(2.5);
    unsized.Add(2.5);
    EXPECT_EQ(unsized.GetCapacity(), 5);
    EXPECT_FALSE(BoolArray(3, 1)[2]);
    EXPECT_TRUE(BoolArray(-3, 1).IsEmpty());
}
