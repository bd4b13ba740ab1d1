#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

// Loads the module as a runtime does, with this program in the runtime's place: it offers the one
// function that the module calls when it is loaded.

namespace {

/// The record by which the module announces itself, field by field as the runtime reads it.
struct Record {
    int version;
    unsigned int flags;
    void* library;
    const char* file;
    void* registerFunction;
    void* contextRegisterFunction;
    const char* name;
    void* privateData;
    void* link;
};

Record* announced = nullptr;
int announcements = 0;

}  // namespace

extern "C" __attribute__((visibility("default"))) void node_module_register(void* record) {
    announced = static_cast<Record*>(record);
    ++announcements;
}

namespace {

TEST(ModuleRecord, IsAnnouncedOnceWithItsNineFields) {
    // Lazily, since the runtime's other functions aren't here and aren't called.
    void* module = dlopen(MODULE_FILE, RTLD_LAZY | RTLD_LOCAL);
    ASSERT_NE(module, nullptr) << dlerror();
    ASSERT_EQ(announcements, 1);
    EXPECT_EQ(announced->version, NODE_ABI);
    EXPECT_EQ(announced->flags, 0U);
    EXPECT_EQ(announced->library, nullptr);
    EXPECT_STREQ(announced->file, "../src/Quiravent");
    EXPECT_NE(announced->registerFunction, nullptr);
    EXPECT_EQ(announced->contextRegisterFunction, nullptr);
    EXPECT_STREQ(announced->name, "quiravent");
    EXPECT_EQ(announced->privateData, nullptr);
    EXPECT_EQ(announced->link, nullptr);

    // Null until a script makes a worker.
    void** worker = static_cast<void**>(dlsym(module, "g_input_worker"));
    ASSERT_NE(worker, nullptr);
    EXPECT_EQ(*worker, nullptr);
}

}  // namespace
