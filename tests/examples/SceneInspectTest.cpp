// The layouts of scene_inspect are a second account of the archive's form, written as data; the library's is
// code. On any bytes and at any schema number the two must take the same number of bytes, or both refuse.

#include "examples/scene_inspect/Inspector.h"
#include "examples/scene_inspect/Layouts.h"
#include "tests/support/Seed.h"

#include "gtest/gtest.h"

#include <optional>
#include <sstream>
#include <string>
#include <vector>

using namespace SceneInspect;

namespace {

std::optional<std::size_t> BytesOfInspector(Kind const& kind, std::vector<unsigned char> const& bytes,
                                            std::uint32_t schema, std::string& printed)
{
    std::ostringstream out;
    Inspector inspector(bytes, schema, 3, out);
    try {
        inspector.Walk("object", kind.layout);
    } catch (Misfit const& misfit) {
        printed = misfit.what();
        return std::nullopt;
    }
    printed = out.str();
    return inspector.GetOffset();
}

std::optional<std::size_t> BytesOfLibraryOrRefusal(Kind const& kind, std::vector<unsigned char> const& bytes,
                                                   std::uint32_t schema)
{
    try {
        return BytesOfLibrary(kind, bytes, 0, schema);
    } catch (std::exception const&) {
        return std::nullopt;
    }
}

} // namespace

TEST(SceneInspectTest, TakesTheSameBytesAsTheLibrary)
{
    VorlaneTest::SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    std::vector<std::uint32_t> const schemas = {0,  6,  7,          9,          10,         11, 12,
                                                13, 15, 16,         17,         18,         19, 20,
                                                21, 22, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 23, 24};
    int fitting = 0;
    for (auto const& [name, kind] : Kinds()) {
        for (std::uint32_t const schema : schemas) {
            for (int trial = 0; trial < 12; ++trial) {
                // Mostly zeros, so that counts stay small; the length decides who runs out.
                std::vector<unsigned char> bytes(
                    static_cast<std::size_t>(engine.Integer(0, trial < 4 ? 60 : 900)));
                for (unsigned char& byte : bytes) {
                    byte = static_cast<unsigned char>(engine.Integer(0, 9) < 9 ? 0 : engine.Integer(0, 3));
                }
                std::string printed;
                std::optional<std::size_t> const taken = BytesOfInspector(kind, bytes, schema, printed);
                ASSERT_EQ(taken, BytesOfLibraryOrRefusal(kind, bytes, schema))
                    << name << " at schema number " << schema << ", " << bytes.size() << " bytes\n"
                    << printed;
                fitting += taken ? 1 : 0;
            }
        }
    }
    EXPECT_GT(fitting, 5000) << "most inputs should fit";
}

TEST(SceneInspectTest, SaysWhereAndWhyAFileStopsFitting)
{
    Kind const& sphere = Kinds().at("sphere");
    std::string printed;
    std::vector<unsigned char> bytes(40, 1);
    EXPECT_EQ(BytesOfInspector(sphere, bytes, 24, printed), 32u);
    EXPECT_NE(printed.find("      28  01 01 01 01"), std::string::npos) << printed;
    EXPECT_NE(printed.find("object.vertex.color = red 1 green 1 blue 1 alpha 1"), std::string::npos)
        << printed;
    bytes.resize(30);
    EXPECT_FALSE(BytesOfInspector(sphere, bytes, 24, printed));
    EXPECT_EQ(printed, "offset 28: object.size needs 4 byte(s), but the file has 2 left");
    bytes.assign({0xFF, 0xFF, 0xFF, 0xFF, 0x02, 0, 0, 'a', 'b'});
    EXPECT_FALSE(BytesOfInspector(Kinds().at("text"), bytes, 24, printed));
    EXPECT_EQ(
        printed,
        "offset 7: object.text is a text of 767 characters of 1 byte(s), but the file has 2 bytes left");
}
