/// @file
/// A program that is not linked to the library loads and unloads it as a part of plugins.
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <future>
#include <thread>

namespace {

constexpr int levels = 300; // uses the code for ordinary depth and that for great depth

void* load() {
    void* const plugin = dlopen(LOADING_PLUGIN, RTLD_NOW | RTLD_LOCAL);
    EXPECT_NE(plugin, nullptr) << dlerror();
    return plugin;
}

int call(void* plugin) {
    const auto function = reinterpret_cast<int (*)(int)>(dlsym(plugin, "length_of_nested"));
    return function == nullptr ? -1 : function(levels);
}

bool library_is_loaded() {
    void* const library = dlopen(LOADING_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    if (library != nullptr) {
        dlclose(library);
    }
    return library != nullptr;
}

TEST(Loading, TheLibraryMayBeLoadedAndUnloadedAnyNumberOfTimes) {
    ASSERT_FALSE(library_is_loaded());
    for (int time = 0; time < 200; ++time) {
        void* const plugin = load();
        ASSERT_NE(plugin, nullptr) << time;
        ASSERT_TRUE(library_is_loaded());
        ASSERT_EQ(call(plugin), 2 * levels);
        ASSERT_EQ(dlclose(plugin), 0);
        ASSERT_FALSE(library_is_loaded());
    }
}

TEST(Loading, ThreadsOlderThanTheLibraryMayUseIt) {
    std::promise<void*> loaded;
    int length = 0;
    std::thread thread(
        [&length, plugin = loaded.get_future()]() mutable { length = call(plugin.get()); });
    void* const plugin = load();
    loaded.set_value(plugin);
    thread.join();
    EXPECT_EQ(length, 2 * levels);
    dlclose(plugin);
}

} // namespace
