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

TEST(SceneInspectTest, TakesTheSameBytesAsTheLibrary)
{
    VorlaneTest::SeededEngine engine;
    SCOPED_TRACE(engine.Describe());
    int fitting = 0;
    for (auto const& [name, kind] : Kinds()) {
        for (std::uint32_t const schema :
             {0u,  6u,  7u,  9u,  10u, 11u,         12u,         13u,         15u, 16u, 17u,
              18u, 19u, 20u, 21u, 22u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu, 23u, 24u}) {
            for (int trial = 0; trial < 12; ++trial) {
                // Mostly zeros, so that counts stay small; the length decides who runs out.
                std::vector<unsigned char> bytes(
                    static_cast<std::size_t>(engine.Integer(0, trial < 4 ? 60 : 900)));
                for (unsigned char& byte : bytes) {
                    byte = static_cast<unsigned char>(engine.Integer(0, 9) < 9 ? 0 : engine.Integer(0, 3));
                }
                std::ostringstream out;
                Inspector inspector(bytes, schema, 3, out);
                std::optional<std::size_t> walked;
                std::optional<std::size_t> taken;
                try {
                    inspector.Walk("object", kind.layout);
                    walked = inspector.GetOffset();
                } catch (Misfit const& misfit) {
                    out << misfit.what();
                }
                try {
                    taken = BytesOfLibrary(kind, bytes, 0, schema);
                } catch (std::exception const&) { // it does not fit
                }
                ASSERT_EQ(walked, taken)
                    << name << " at schema number " << schema << ", " << bytes.size() << " bytes\n"
                    << out.str();
                fitting += taken ? 1 : 0;
            }
        }
    }
    EXPECT_GT(fitting, 5000) << "most inputs should fit";
}
