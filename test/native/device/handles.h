#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>

#include "device/Station.h"
#include "porting/pl_functions.h"

inline uint32_t target() {
    uint32_t handle = 0;
    EXPECT_EQ(pl_gfx_GetTargetCanvas(&handle), e_pl_status_ok);
    return handle;
}

inline uint32_t newCanvas(uint32_t width, uint32_t height) {
    uint32_t handle = 0;
    EXPECT_EQ(pl_gfx_CreateCanvas(width, height, &handle), e_pl_status_ok);
    return handle;
}

inline std::pair<uint32_t, uint32_t> sizeOf(uint32_t canvas) {
    std::pair<uint32_t, uint32_t> size;
    EXPECT_EQ(pl_gfx_Canvas_GetSize(canvas, &size.first, &size.second), e_pl_status_ok);
    return size;
}

inline uint32_t newFont(uint32_t pixelHeight) {
    uint32_t handle = 0;
    EXPECT_EQ(pl_gfx_LoadFont(TEST_FONT, pixelHeight, &handle), e_pl_status_ok);
    return handle;
}

inline unsigned int storeOf(const std::string& context) {
    unsigned int handle = 0;
    EXPECT_EQ(pl_persistent_GetPersistent(&handle, context), e_pl_status_ok);
    return handle;
}

inline s_pl_gfx_vram_stats videoMemory() {
    s_pl_gfx_vram_stats stats{};
    EXPECT_EQ(pl_gfx_GetVRAMStats(&stats), e_pl_status_ok);
    return stats;
}

/// Expects the same status of each of these calls.
inline void expectAll(int32_t expected, std::initializer_list<int32_t> statuses) {
    for (const int32_t& status : statuses)
        EXPECT_EQ(status, expected) << &status - statuses.begin();
}

/// A PNG file of the size of the screen, made by the device itself.
inline std::string makePicture(const Station& station) {
    std::string file = station / "picture.png";
    Station maker;
    maker.setVariable("QUIRAVENT_SCREENSHOT", file);
    maker.expectQuiet([] { EXPECT_EQ(pl_input_init(), e_pl_status_ok); });
    return file;
}
