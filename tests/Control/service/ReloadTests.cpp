#include <gtest/gtest.h>

#include <dlfcn.h>
#include <malloc.h>

#include <cstddef>

// A host that loads the library, asks it and unloads it, over and over. The platform stays, as it
// does on a board.

namespace {

constexpr int manyTimes = 1000;

bool isLoaded(const char* library) {
    void* const handle = dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
    if (handle != nullptr) {
        dlclose(handle);
    }
    return handle != nullptr;
}

long loadedOnce() {
    void* const host = dlopen(QOR_RELOADED_HOST, RTLD_NOW | RTLD_LOCAL);
    if (host == nullptr) {
        ADD_FAILURE() << dlerror();
        return 0;
    }
    const auto ask = reinterpret_cast<long (*)()>(dlsym(host, "powerAt64Qam"));
    const long power = ask == nullptr ? 0 : ask();
    EXPECT_TRUE(isLoaded(QOR_LIBRARY));
    dlclose(host);
    return power;
}

} // namespace

TEST(Library, isLoadedAndUnloadedAThousandTimesAndLeavesLessEachTimeThanItsHeaderSays) {
    constexpr std::size_t mostLeft = 300;
    // What the C library and the platform keep for good.
    ASSERT_EQ(loadedOnce(), 1800);
    ASSERT_FALSE(isLoaded(QOR_LIBRARY));
    const std::size_t before = mallinfo2().uordblks;

    for (int times = 0; times < manyTimes; ++times) {
        ASSERT_EQ(loadedOnce(), 1800);
        ASSERT_FALSE(isLoaded(QOR_LIBRARY));
    }

    EXPECT_LT(mallinfo2().uordblks, before + manyTimes * mostLeft);
    EXPECT_GT(mallinfo2().uordblks, before) << "nothing is left: the header need not speak of it";
}
