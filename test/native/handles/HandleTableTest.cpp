#include "support/HandleTable.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace quiravent::desktop {
namespace {

using Canvases = HandleTable<std::string, HandleKind::canvas>;
using Fonts = HandleTable<std::string, HandleKind::font>;

std::shared_ptr<std::string> text(const char* content) {
    return std::make_shared<std::string>(content);
}

TEST(HandleTable, RefusesForeignHandles) {
    Canvases canvases;
    Fonts fonts;
    const uint32_t canvas = canvases.insert(text("canvas"));
    const uint32_t font = fonts.insert(text("font"));
    for (const uint32_t handle : {0U, 1U, 0xffffffffU, font, canvas + 1, canvas + (1U << 20)}) {
        EXPECT_EQ(canvases.find(handle), nullptr) << handle;
        EXPECT_EQ(canvases.remove(handle), nullptr) << handle;
    }
    EXPECT_EQ(fonts.find(canvas), nullptr);
    // In use it survives its release.
    const auto inUse = canvases.find(canvas);
    canvases.remove(canvas);
    EXPECT_EQ(*inUse, "canvas");
    EXPECT_EQ(inUse.use_count(), 1);
}

TEST(HandleTable, ReleasedHandleIsStaleAtOnceAndForALongTime) {
    constexpr uint32_t kNextOfSlot = 1U << 20;
    Canvases table;
    std::set<uint32_t> seen;
    for (int i = 0; i < 200000; ++i) {
        const uint32_t handle = table.insert(text("x"));
        ASSERT_NE(handle, 0U);
        ASSERT_TRUE(seen.insert(handle).second) << "reused after " << i;
        ASSERT_NE(table.remove(handle), nullptr);
        for (const uint32_t stale : {handle, handle + kNextOfSlot}) {
            ASSERT_EQ(table.find(stale), nullptr);
            ASSERT_EQ(table.remove(stale), nullptr);
        }
    }
}

TEST(HandleTable, FullTableGivesZeroUntilOneIsReleased) {
    Canvases table;
    const auto object = text("x");
    uint32_t last = 0;
    for (uint32_t i = 0; i < Canvases::kMaxObjects; ++i) last = table.insert(object);
    ASSERT_NE(last, 0U);
    EXPECT_EQ(table.insert(object), 0U);
    table.remove(last);
    EXPECT_NE(table.insert(object), 0U);
    EXPECT_EQ(table.insert(object), 0U);
}

}  // namespace
}  // namespace quiravent::desktop
