// Runs ribbon as a user would.

#include "tests/support/TemporaryFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/wait.h>

namespace {

int RunRibbon(std::string const& arguments)
{
    return WEXITSTATUS(std::system(("'" VORLANE_RIBBON "' " + arguments + " >/dev/null 2>&1").c_str()));
}

std::string ReadFile(std::string const& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

} // namespace

TEST(RibbonTest, DrawsAChainAndRefusesAnythingElse)
{
    std::string const chains = VORLANE_SOURCE_DIR "/examples/data/chains/";
    VorlaneTest::TemporaryFile const picture("ribbon.svg");
    EXPECT_EQ(RunRibbon("'" + chains + "1c1n_ca.xyz' '" + picture.path + "'"), 0);
    EXPECT_EQ(ReadFile(picture.path), ReadFile(VORLANE_SOURCE_DIR "/docs/ribbon.svg"))
        << "the picture is old";
    EXPECT_EQ(RunRibbon("'" + chains + "1guy_ca_with_break.xyz'"), 0);
    EXPECT_EQ(RunRibbon("'" + chains + "SOURCES.md'"), 1);
    EXPECT_EQ(RunRibbon("'" + chains + "1orc_ca.xyz' /no/such/folder/ribbon.svg"), 1);
    EXPECT_EQ(RunRibbon(""), 2);
}
