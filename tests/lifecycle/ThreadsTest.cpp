// Distinct objects on distinct threads, where the library allows it, and first uses of the constant tables
// from several threads at once. The test means most under the thread sanitizer.

#include "vorlane/VorlaneCore.h"

#include "gtest/gtest.h"

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

using namespace Vorlane;
using Spatia::Point3d;

namespace {

/// Runs `work` on several threads that start together.
void OnSeveralThreads(std::function<void(int)> const& work)
{
    constexpr int threadCount = 4;
    std::atomic<int> waiting{threadCount};
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&, i] {
            for (--waiting; waiting > 0;) {
            }
            work(i);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace

TEST(ThreadsTest, ConstantTablesMayBeReachedFirstFromAnyThread)
{
    using namespace CoordinationGeometry;
    OnSeveralThreads([](int) {
        for (int type = 0; type <= 31; ++type) {
            Orrin::LegacyArray<Point3d> sites;
            GetCoordinates(static_cast<CoordinationGeometryType>(type), sites, nullptr);
            GetCoordinationAngle(static_cast<CoordinationGeometryType>(type), 1, 2);
        }
        EXPECT_EQ(StringToCoordinationGeometry("dodecahedral"), dodecahedral);
        int value = 0;
        EXPECT_TRUE(RomanNumerals::RomanNumeralToInteger(std::string("XIV"), value));
        EXPECT_EQ(value, 14);
    });
}

TEST(ThreadsTest, TextsThatShareStorageLiveOnDistinctThreads)
{
    CString const shared("a text that is long enough to be shared by all of the threads");
    OnSeveralThreads([&](int) {
        for (int round = 0; round < 200; ++round) {
            CString text(shared);
            for (CString rest = text; !rest.IsEmpty(); rest = rest.Mid(7)) {
                EXPECT_GT(rest.GetLength(), 0);
            }
            text += "!";
            EXPECT_EQ(text.GetLength(), shared.GetLength() + 1);
        }
    });
}

TEST(ThreadsTest, DistinctObjectsOfEveryFamilyWorkOnDistinctThreads)
{
    OnSeveralThreads([](int thread) {
        for (int round = 0; round < 20; ++round) {
            QuadraticMatrix matrix(3);
            QuadraticMatrix vectors;
            double values[3];
            matrix(0, 0) = 2.0 + thread;
            matrix(0, 1) = matrix(1, 0) = 1.0;
            matrix(1, 1) = 5.0;
            matrix(2, 2) = 1.0;
            matrix.GetEigenvectorsAndEigenvalues(vectors, values);
            EXPECT_GT(values[0], values[2]);

            RandomInteger generator(static_cast<unsigned long>(thread) + 1);
            UniformRandomSequence sequence(generator, 0.0, 10.0);
            NeighborList neighbours(2.0, 17);
            Orrin::LegacyArray<Point3d> points;
            for (int i = 0; i < 50; ++i) {
                double const x = sequence();
                double const y = sequence();
                points.push_back(Point3d(x, y, 0));
                neighbours.Add(points[i]);
            }
            IntArray first, second;
            neighbours.GetPairs(first, second);
            EXPECT_EQ(first.GetSize(), second.GetSize());

            CustomColorSpectrum spectrum("mine", 16, true);
            spectrum.SetColor(3, Orrin::Color::Red());
            spectrum.SetColor(12, Orrin::Color::Blue());
            Orrin::Color color;
            EXPECT_FALSE(spectrum.GetColor(7, color));

            RegExpression expression("([a-z]+)([0-9]+)", false);
            EXPECT_TRUE(expression.Match(CString("--abc123--"), false));
            EXPECT_EQ(expression.GetSubstring(2), "123");
            double number = 0;
            EXPECT_TRUE(StringUtils::StringToReal("2.5", number));

            CMemFile file;
            CArchive archive(&file, CArchive::store);
            archive.m_nObjectSchema = 24;
            SerializePoint3dArray(archive, points);
            archive.Close();
            EXPECT_EQ(file.Bytes().size(), 2u + 50u * 12u);
        }
    });
}
