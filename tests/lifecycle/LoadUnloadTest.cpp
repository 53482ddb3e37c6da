// Loads the library as a part of a module, uses it, unloads it, and finds it fresh when it is loaded again.

#include "gtest/gtest.h"

#include <dlfcn.h>

TEST(LoadUnloadTest, EveryLoadFindsFreshStateAndEveryUnloadIsReal)
{
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        void* const module = dlopen(VORLANE_LIBRARY_USER, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(module, nullptr) << dlerror();
        auto const use = reinterpret_cast<char const* (*)()>(dlsym(module, "UseFreshLibrary"));
        ASSERT_NE(use, nullptr) << dlerror();
        EXPECT_STREQ(use(), "");
        ASSERT_EQ(dlclose(module), 0) << dlerror();
        EXPECT_EQ(dlopen(VORLANE_CORE_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr)
            << "the library stayed loaded";
    }
}
