#include "tests/support/AllocationFailure.h"
#include "tests/support/Seed.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include "gtest/gtest.h"

#include <algorithm>
#include <climits>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using IntMap = CMap<int, int, int, int>;
using TextMap = CMap<CString, char const*, int, int>;
using Entries = std::vector<std::pair<int, int>>;

Entries EntriesOf(IntMap const& map)
{
    Entries entries;
    for (POSITION position = map.GetStartPosition(); position != nullptr;) {
        std::pair<int, int> entry;
        map.GetNextAssoc(position, entry.first, entry.second);
        entries.push_back(entry);
    }
    return entries;
}

} // namespace

TEST(CMapTest, HashesAreThePublishedOnes)
{
    EXPECT_EQ(
        (std::vector<unsigned int>{HashKey<int>(0), HashKey<int>(31), HashKey<int>(-1), HashKey<int>(INT_MIN),
                                   HashKey<char const*>(""), HashKey<char const*>("a\xE9")}),
        (std::vector<unsigned int>{0, 1, 0x0FFFFFFF, 0x08000000, 0, 97 * 33 + 0xE9}));
}

TEST(CMapTest, IteratesByBucketNewestFirstAtEverySize)
{
    VorlaneTest::SeededEngine random;
    SCOPED_TRACE(random.Describe());
    for (int const count : {0, 1, 2, 17, 68, 72, 73, 200, 5000}) {
        for (unsigned int const tableSize : {1u, 17u, 101u}) {
            SCOPED_TRACE(testing::Message() << count << " entries in " << tableSize << " buckets");
            IntMap map(3);
            map.InitHashTable(tableSize, count % 2);
            Entries entries; // the newest first, as in each bucket
            std::set<int> keys;
            while (map.GetCount() < count) {
                int const key = random.Integer(-4000, 4000) * random.Integer(1, 100000);
                if (keys.insert(key).second) {
                    entries.emplace(entries.begin(), key, map.GetCount());
                    map.SetAt(key, map.GetCount());
                }
            }
            // Setting an entry that is there moves nothing.
            for (auto& [key, value] : entries) {
                map[key] += 5;
                value += 5;
                int found = -1;
                ASSERT_TRUE(map.Lookup(key, found));
                ASSERT_EQ(found, value);
                ASSERT_EQ(map.Lookup(key + 1, found), keys.count(key + 1) == 1);
            }
            EXPECT_EQ(map.GetCount(), count);
            auto const bucketOf = [&](auto const& entry) {
                return (static_cast<unsigned int>(entry.first) >> 4) % tableSize;
            };
            std::stable_sort(entries.begin(), entries.end(),
                             [&](auto const& a, auto const& b) { return bucketOf(a) < bucketOf(b); });
            ASSERT_EQ(EntriesOf(map), entries);
        }
    }
}

TEST(CMapTest, LookupWithoutEntriesAllocatesNothing)
{
    VorlaneTest::AllocationFailure const failure(0);
    TextMap map;
    int value = 5;
    EXPECT_FALSE(map.Lookup("a", value) || map.GetStartPosition() != nullptr || failure.HasHappened());
    EXPECT_EQ(value, 5);
}

TEST(CMapTest, TableIsSetWhileEmpty)
{
    IntMap map;
    EXPECT_EQ(map.GetHashTableSize(), 17u);
    EXPECT_THROW(map.InitHashTable(0, 1), CInvalidArgException);
    map.InitHashTable(2, 1);
    map[0] = 1;
    EXPECT_THROW(map.InitHashTable(5, 0), CInvalidArgException);
    map.RemoveAll();
    EXPECT_EQ(map.GetHashTableSize(), 2u);
    int found = 0;
    EXPECT_FALSE(map.Lookup(0, found));
    map[32] = 7;
    EXPECT_EQ(EntriesOf(map), (Entries{{32, 7}}));
    POSITION none = nullptr;
    EXPECT_THROW(map.GetNextAssoc(none, found, found), CInvalidArgException);
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
