// Runs ramp_swatches as a user would.

#include "tests/support/TemporaryFile.h"
#include "vorlane/colour/ColorSpectrumRegistry.h"

#include "gtest/gtest.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace {

int RunSwatches(std::string const& arguments)
{
    return WEXITSTATUS(std::system(("'" VORLANE_RAMP_SWATCHES "' " + arguments + " 2>/dev/null").c_str()));
}

std::string ReadFile(std::string const& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

int Count(std::string const& text, std::string const& part)
{
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

} // namespace

TEST(RampSwatchesTest, DrawsEverySpectrumWithItsNameAndBins)
{
    VorlaneTest::TemporaryFile const page("swatches.svg");
    ASSERT_EQ(RunSwatches("'" + page.path + "'"), 0);
    std::string const svg = ReadFile(page.path);
    std::vector<CString> names;
    Vorlane::ColorSpectrumRegistry().GetColorSpectrumNames(names);
    std::size_t at = 0;
    for (CString const& name : names) {
        at = svg.find(">" + std::string(name) + "<", at);
        ASSERT_NE(at, std::string::npos) << name;
    }
    EXPECT_EQ(Count(svg, "<rect"), 1 + 12 * (32 + 1) + (16 + 1) + 2 * (64 + 1));
    // 24 bins are off; two ramps have a black end, and a stop there.
    EXPECT_EQ(Count(svg, "fill=\"#000000\""), 24 + 2 + 2);
    // Bin 8 of "Rainbow 1" lies 24 of 31 parts of the way from red to yellow.
    EXPECT_NE(svg.find("fill=\"#ffc500\""), std::string::npos);
    EXPECT_EQ(svg, ReadFile(VORLANE_SOURCE_DIR "/docs/ramp_swatches.svg"))
        << "the page of the documents is old";
}

TEST(RampSwatchesTest, AnswersBadArguments)
{
    EXPECT_EQ(RunSwatches("--help >/dev/null"), 0);
    EXPECT_EQ(RunSwatches("--colour"), 2);
    EXPECT_EQ(RunSwatches("one two"), 2);
    EXPECT_EQ(RunSwatches("/no/such/folder/page.svg"), 1);
}
