#ifndef VORLANE_TESTS_SUPPORT_TEMPORARYFILE_H
#define VORLANE_TESTS_SUPPORT_TEMPORARYFILE_H

#include "gtest/gtest.h"

#include <cstdio>
#include <string>
#include <unistd.h>

namespace VorlaneTest {

/// The path of a file that is not there yet, unlike those of other test programs, and that goes with the
/// object.
struct TemporaryFile
{
    explicit TemporaryFile(std::string const& name)
        : path(testing::TempDir() + "vorlane_" + std::to_string(getpid()) + "_" + name)
    {
        std::remove(path.c_str());
    }
    ~TemporaryFile() { std::remove(path.c_str()); }
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;

    std::string const path;
};

} // namespace VorlaneTest

#endif
