#include "tests/support/AllocationFailure.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include "gtest/gtest.h"

#include <climits>
#include <string>
#include <vector>

TEST(CMapTest, HashesAreThePublishedOnes)
{
    EXPECT_EQ(
        (std::vector<unsigned int>{HashKey<int>(0), HashKey<int>(31), HashKey<int>(-1), HashKey<int>(INT_MIN),
                                   HashKey<char const*>(""), HashKey<char const*>("a\xE9")}),
        (std::vector<unsigned int>{0, 1, 0x0FFFFFFF, 0x08000000, 0, 97 * 33 + 0xE9}));
}

TEST(CMapTest, LookupWithoutEntriesTakesNoMemory)
{
    VorlaneTest::AllocationFailure const failure(0);
    CMap<CString, char const*, int, int> map;
    int value = 5;
    EXPECT_FALSE(map.Lookup("a", value) || map.GetStartPosition() != nullptr || failure.HasHappened());
    EXPECT_EQ(value, 5);
}

TEST(CMapTest, IsUnchangedWhenMemoryRunsOut)
{
    CMapStringToPtr map(4);
    std::vector<std::string> keys; // made ahead; in the map each takes memory
    for (int i = 0; i < 100; ++i) {
        keys.push_back("a key that takes memory " + std::to_string(i));
    }
    auto const fill = [&] {
        for (std::string& key : keys) {
            map.SetAt(key.c_str(), &key);
        }
    };
    auto const check = [&] {
        int seen = 0;
        for (POSITION position = map.GetStartPosition(); position != nullptr; ++seen) {
            CString key;
            void* value = nullptr;
            map.GetNextAssoc(position, key, value);
            EXPECT_EQ(key, static_cast<std::string*>(value)->c_str());
        }
        EXPECT_EQ(seen, map.GetCount());
    };
    EXPECT_GT(VorlaneTest::ForEachFailedAllocation([&] { map.RemoveAll(); }, fill, check), 100);
    check();
    EXPECT_EQ(map["new"], nullptr);
    EXPECT_EQ(map.GetCount(), 101);
}
