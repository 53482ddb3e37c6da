#include "tests/support/AllocationFailure.h"
#include "tests/support/ArchivedBytes.h"
#include "tests/support/Files.h"

#include "gtest/gtest.h"

#include <algorithm>
#include <csignal>
#include <functional>
#include <string>
#include <sys/time.h>
#include <thread>
#include <unistd.h>
#include <vector>

using VorlaneTest::CauseOf;
using VorlaneTest::TemporaryFile;

TEST(CFileTest, KeepsBytesOnDisk)
{
    TemporaryFile const temporary("bytes");
    char const* const path = temporary.path.c_str();
    CFile created(path, CFile::modeWrite | CFile::modeCreate);
    created.Write("hello", 5);
    created.Flush();
    created.Close();
    created.Close();
    CFile changed(path, CFile::modeReadWrite);
    EXPECT_EQ(changed.GetLength(), 5u);
    changed.Write("J", 1);
    EXPECT_EQ(changed.GetRemaining(), 4u);
    changed.SeekToBegin();
    char bytes[10];
    EXPECT_EQ(changed.Read(bytes, 10), 5u);
    EXPECT_EQ(std::string(bytes, 5), "Jello");
    EXPECT_EQ(changed.Read(bytes, 10), 0u);
    EXPECT_TRUE(changed.StepBack(2));
    EXPECT_FALSE(changed.StepBack(4));
    EXPECT_EQ(changed.GetRemaining(), 2u);
    EXPECT_EQ(changed.GetFilePath(), path);
    EXPECT_EQ(CFile(path, CFile::modeWrite | CFile::modeCreate).GetLength(), 0u);
}

TEST(CFileTest, RefusalsTellTheirCause)
{
    TemporaryFile const temporary("refused");
    std::string const& path = temporary.path;
    EXPECT_EQ(CauseOf<CFileException>([&] { CFile(path.c_str(), CFile::modeRead); }, path),
              +CFileException::fileNotFound);
    EXPECT_EQ(CauseOf<CFileException>([&] { CFile(path.c_str(), CFile::modeWrite); }, path),
              +CFileException::fileNotFound);
    EXPECT_EQ(CauseOf<CFileException>([&] { CFile("/tmp", CFile::modeRead); }, "/tmp"),
              +CFileException::accessDenied);
    EXPECT_THROW(CFile(path.c_str(), 3), CInvalidArgException);
    CFile writing(path.c_str(), CFile::modeWrite | CFile::modeCreate);
    char byte = 0;
    EXPECT_EQ(CauseOf<CFileException>([&] { writing.Read(&byte, 1); }, path), +CFileException::accessDenied);
    CFile reading(path.c_str(), CFile::modeRead);
    EXPECT_EQ(CauseOf<CFileException>([&] { reading.Write(&byte, 1); }, path), +CFileException::accessDenied);
    reading.Close();
    EXPECT_EQ(CauseOf<CFileException>([&] { reading.Read(&byte, 1); }, path), +CFileException::generic);
}

TEST(CFileTest, AFullDiskIsReportedByEveryRoadEvenWithoutMemory)
{
    std::string const path = "/dev/full";
    CFile file(path.c_str(), CFile::modeWrite);
    EXPECT_EQ(CauseOf<CFileException>([&] { file.Write("x", 1); }, path), +CFileException::diskFull);
    std::vector<char> const block(100000);
    CArchive atClose(&file, CArchive::store);
    atClose << 1;
    EXPECT_EQ(CauseOf<CFileException>([&] { atClose.Close(); }, path), +CFileException::diskFull);
    CArchive atField(&file, CArchive::store, 8);
    atField << 1 << 2;
    EXPECT_EQ(CauseOf<CFileException>([&] { atField << 3; }, path), +CFileException::diskFull);
    CArchive atBlock(&file, CArchive::store);
    EXPECT_EQ(CauseOf<CFileException>([&] { atBlock.Write(block.data(), 100000); }, path),
              +CFileException::diskFull);
    {
        VorlaneTest::AllocationFailure const noMemoryToTellWhy(0);
        EXPECT_THROW(atBlock.Flush(), CMemoryException);
    }
    // The failure is not forgotten, though the buffer is empty.
    EXPECT_EQ(CauseOf<CFileException>([&] { atBlock.Close(); }, path), +CFileException::diskFull);
    CArchive swallowed(&file, CArchive::store);
    swallowed << 1;
}

TEST(CFileTest, InterruptedAndPartialCallsAreCarriedOn)
{
    // A pipe takes and gives pieces, while a timer's signal interrupts both ends.
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::string const readPath = "/dev/fd/" + std::to_string(ends[0]);
    std::string const writePath = "/dev/fd/" + std::to_string(ends[1]);
    struct sigaction interrupting = {};
    struct sigaction before = {};
    interrupting.sa_handler = [](int) {
    };
    sigaction(SIGALRM, &interrupting, &before);
    itimerval const often = {{0, 100}, {0, 100}};
    setitimer(ITIMER_REAL, &often, nullptr);
    constexpr int count = 4000000;
    int matching = 0;
    {
        CFile reading(readPath.c_str(), CFile::modeRead);
        CFile writing(writePath.c_str(), CFile::modeWrite);
        close(ends[0]);
        close(ends[1]);
        std::thread writer([&] {
            CArchive archive(&writing, CArchive::store);
            for (int i = 0; i < count; ++i) {
                archive << i;
            }
            archive.Close();
            writing.Close();
        });
        CArchive archive(&reading, CArchive::load);
        for (int i = 0; i < count; ++i) {
            int number = -1;
            archive >> number;
            matching += number == i;
        }
        EXPECT_EQ(archive.GetRemaining(), 0u);
        writer.join();
    }
    EXPECT_EQ(matching, count);
    itimerval const never = {};
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &before, nullptr);
}

TEST(CMemFileTest, OverwritesAndExtendsUnlessMemoryRunsOut)
{
    CMemFile file({1, 2, 3});
    EXPECT_EQ(file.GetFilePath(), "");
    unsigned char byte = 0;
    EXPECT_EQ(file.Read(&byte, 1), 1u);
    unsigned char const more[] = {7, 8, 9};
    std::function<void()> const extensions[] = {[&] { file.Write(more, 3); },
                                                [&] {
                                                    file.WriteInPlace(3);
                                                }};
    for (auto const& extend : extensions) {
        VorlaneTest::AllocationFailure const failure(0);
        EXPECT_THROW(extend(), CMemoryException);
    }
    EXPECT_EQ(file.Bytes(), (std::vector<unsigned char>{1, 2, 3}));
    file.Write(more, 3);
    EXPECT_EQ(file.Read(&byte, 1), 0u);
    file.SeekToBegin();
    file.Read(&byte, 1);
    file.Write(file.Bytes().data(), 4); // which move meanwhile
    EXPECT_EQ(file.Bytes(), (std::vector<unsigned char>{1, 1, 7, 8, 9}));
    file.SeekToBegin();
    EXPECT_EQ(file.ReadInPlace(6), nullptr);
    EXPECT_EQ(file.ReadInPlace(2), file.Bytes().data());
    std::copy_n(more, 3, file.WriteInPlace(4));
    EXPECT_EQ(file.Bytes(), (std::vector<unsigned char>{1, 1, 7, 8, 9, 0}));
    EXPECT_EQ(file.GetRemaining(), 0u);
}
