#include "vorlane/numerics/QuadraticMatrix.h"

#include "gtest/gtest.h"

#include "tests/support/AllocationFailure.h"

#include <cstddef>
#include <limits>

using Vorlane::QuadraticMatrix;

TEST(QuadraticMatrixTest, KeepsItsValueWhenMemoryRunsOut)
{
    QuadraticMatrix const before(Spatia::Matrix3x3(0, 1, 2, 3, 4, 5, 6, 7, 8)), source(20);
    QuadraticMatrix target;
    double values[20];
    // The elements, then the row table; what was had before the failure is given back.
    EXPECT_EQ(VorlaneTest::ForEachFailedAllocation([&] { target = before; }, [&] { target = source; },
                                                   [&] {
                                                       EXPECT_EQ(target.Dimension(), 3);
                                                       EXPECT_EQ(target(2, 1), 7);
                                                   }),
              2);
    EXPECT_GT(VorlaneTest::ForEachFailedAllocation(
                  [] {}, [&] { source.GetEigenvectorsAndEigenvalues(target, values); }, [] {}),
              1);
    // Neither 46341 times 46341 nor 2^31 times 2^31 may wrap around.
    VorlaneTest::AllocationLimit const limit(std::size_t{1} << 30);
    for (int dimension : {46341, 65536, std::numeric_limits<int>::max()}) {
        EXPECT_THROW(QuadraticMatrix{dimension}, CMemoryException) << dimension;
    }
}
