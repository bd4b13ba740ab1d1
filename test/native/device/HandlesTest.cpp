// What the C interface does with handles and pointers that are wrong.

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "common/callWith.h"
#include "device/Station.h"
#include "porting/pl_events.h"
#include "porting/pl_functions.h"

namespace {

constexpr s_pl_gfx_rect kRect{1, 2, 3, 4};

uint32_t target() {
    uint32_t handle = 0;
    EXPECT_EQ(pl_gfx_GetTargetCanvas(&handle), e_pl_status_ok);
    return handle;
}

uint32_t newCanvas() {
    uint32_t handle = 0;
    EXPECT_EQ(pl_gfx_CreateCanvas(10, 10, &handle), e_pl_status_ok);
    return handle;
}

uint32_t newFont() {
    uint32_t handle = 0;
    EXPECT_EQ(pl_gfx_LoadFont(TEST_FONT, 20, &handle), e_pl_status_ok);
    return handle;
}

/// Functions that take a number as it is, or nothing.
const std::set<std::string> kTakersOfAll{
    "pl_input_init",
    "pl_input_UpdateKeyMask",
    "pl_platform_SetRuntimeState",
    "pl_platform_Exit",
    "pl_platform_Restart",
    "pl_platform_ToggleLiveDTV",
    "pl_platform_SetReferenceDate",
    "pl_dtv_Action_unselectTransportStream",
};

void expectRefusalOfAll(uint32_t number) {
#define PL_FUNCTION(result, name, parameters, arguments)                   \
    if (kTakersOfAll.count(#name) == 0) {                                  \
        EXPECT_NE(callWith(number, &(name)), 0) << #name << ' ' << number; \
    }
#include "porting/pl_functions.def"
}

TEST(Handles, WrongOnesAndNullPointersAreRefusedByEveryFunction) {
    const Station station;
    station.expectQuiet([] {
        EXPECT_EQ(pl_input_init(), e_pl_status_ok);
        for (const uint32_t number : {0U, 1U, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
            expectRefusalOfAll(number);
        }
        pl_EnableDTVEvents();
    });
}

TEST(Handles, NullPointersAreRefusedOnALiveCanvasAsWell) {
    const Station station;
    station.expectQuiet([] {
        const uint32_t canvas = newCanvas();
        for (auto* const function : {pl_gfx_Canvas_FillRect, pl_gfx_Canvas_ClearRect,
                                     pl_gfx_Canvas_DrawRect, pl_gfx_Canvas_SetClip}) {
            EXPECT_EQ(function(canvas, nullptr), e_pl_status_invalid_argument);
        }
        uint32_t size = 0;
        EXPECT_EQ(pl_gfx_Canvas_GetSize(canvas, &size, nullptr), e_pl_status_invalid_argument);
        EXPECT_EQ(pl_gfx_Canvas_GetColor(canvas, nullptr), e_pl_status_invalid_argument);
        EXPECT_EQ(pl_gfx_Canvas_GetClip(canvas, nullptr), e_pl_status_invalid_argument);
        EXPECT_EQ(pl_gfx_Canvas_DrawText(canvas, 0, 0, nullptr), e_pl_status_invalid_argument);
        EXPECT_EQ(pl_gfx_Canvas_ComposeScaled(canvas, canvas, nullptr, &kRect),
                  e_pl_status_invalid_argument);
        EXPECT_EQ(pl_gfx_Canvas_ComposeScaled(canvas, canvas, &kRect, nullptr),
                  e_pl_status_invalid_argument);
    });
}

TEST(Handles, AreOfOneKind) {
    const Station station;
    station.expectQuiet([] {
        const uint32_t canvas = newCanvas();
        const uint32_t font = newFont();
        unsigned int store = 0;
        EXPECT_EQ(pl_persistent_GetPersistent(&store, "c"), e_pl_status_ok);
        std::string value;
        for (const uint32_t other : {font, store}) {
            EXPECT_EQ(pl_gfx_Canvas_FillRect(other, &kRect), e_pl_status_invalid_handle);
            EXPECT_EQ(pl_gfx_Canvas_Compose(canvas, other, 0, 0, nullptr),
                      e_pl_status_invalid_handle);
            EXPECT_EQ(pl_gfx_ReleaseCanvas(other), e_pl_status_invalid_handle);
        }
        EXPECT_EQ(pl_gfx_Canvas_SetFont(canvas, canvas), e_pl_status_invalid_handle);
        EXPECT_EQ(pl_gfx_ReleaseFont(canvas), e_pl_status_invalid_handle);
        EXPECT_EQ(pl_persistent_GetValue(canvas, "k", value), e_pl_status_invalid_handle);
        EXPECT_EQ(pl_gfx_Canvas_SetFont(canvas, font), e_pl_status_ok);
        EXPECT_EQ(pl_gfx_Canvas_FillRect(canvas, &kRect), e_pl_status_ok);
    });
}

TEST(Handles, ReleasedOnesAreStale) {
    const Station station;
    station.expectQuiet([] {
        const uint32_t canvas = newCanvas();
        EXPECT_EQ(pl_gfx_ReleaseCanvas(canvas), e_pl_status_ok);
        EXPECT_EQ(pl_gfx_ReleaseCanvas(canvas), e_pl_status_invalid_handle);
        EXPECT_EQ(pl_gfx_Canvas_FillRect(canvas, &kRect), e_pl_status_invalid_handle);
        uint32_t w = 7;
        uint32_t h = 7;
        EXPECT_EQ(pl_gfx_Canvas_GetSize(canvas, &w, &h), e_pl_status_invalid_handle);
        EXPECT_EQ(w, 7U);
        EXPECT_NE(newCanvas(), canvas);
    });
}

TEST(Handles, FontThatIsReleasedWhileSetTakesTextAway) {
    const Station station;
    station.expectQuiet([] {
        const uint32_t canvas = newCanvas();
        uint32_t w = 0;
        uint32_t h = 0;
        EXPECT_EQ(pl_gfx_Canvas_MeasureText(canvas, "x", &w, &h), e_pl_status_wrong_state);
        const uint32_t font = newFont();
        pl_gfx_Canvas_SetFont(canvas, font);
        EXPECT_EQ(pl_gfx_Canvas_MeasureText(canvas, "x", &w, &h), e_pl_status_ok);
        EXPECT_GT(w, 0U);
        EXPECT_GE(h, 20U);
        EXPECT_EQ(pl_gfx_ReleaseFont(font), e_pl_status_ok);
        EXPECT_EQ(pl_gfx_ReleaseFont(font), e_pl_status_invalid_handle);
        EXPECT_EQ(pl_gfx_Canvas_MeasureText(canvas, "x", &w, &h), e_pl_status_wrong_state);
        EXPECT_EQ(pl_gfx_Canvas_DrawText(canvas, 0, 0, "x"), e_pl_status_wrong_state);
        EXPECT_EQ(pl_gfx_Canvas_SetFont(canvas, font), e_pl_status_invalid_handle);
    });
}

TEST(Handles, TargetIsOneUntilReleasedAndKeepsItsPixels) {
    Station station;
    station.setVariable("QUIRAVENT_SCREENSHOT", station / "none.png");
    station.expectQuiet([] {
        const uint32_t first = target();
        EXPECT_EQ(target(), first);
        uint32_t w = 0;
        uint32_t h = 0;
        pl_gfx_Canvas_GetSize(first, &w, &h);
        EXPECT_EQ(w, 1280U);
        EXPECT_EQ(h, 720U);
        pl_gfx_Canvas_SetColor(first, {1, 2, 3, 4});
        s_pl_gfx_vram_stats before{};
        pl_gfx_GetVRAMStats(&before);

        EXPECT_EQ(pl_gfx_ReleaseCanvas(first), e_pl_status_ok);
        EXPECT_EQ(pl_gfx_Canvas_Flush(first, nullptr), e_pl_status_invalid_handle);
        const uint32_t second = target();
        EXPECT_NE(second, first);
        s_pl_gfx_color color{};
        pl_gfx_Canvas_GetColor(second, &color);
        EXPECT_EQ(color.r, 255);
        s_pl_gfx_vram_stats after{};
        pl_gfx_GetVRAMStats(&after);
        EXPECT_EQ(after.used, before.used);
    });
}

}  // namespace
