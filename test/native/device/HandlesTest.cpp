// What the C interface does with handles and pointers that are wrong.

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "common/callWith.h"
#include "device/Station.h"
#include "device/handles.h"
#include "porting/pl_events.h"

namespace {

constexpr s_pl_gfx_rect kRect{1, 2, 3, 4};

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
    expectQuiet([] {
        EXPECT_EQ(pl_input_init(), e_pl_status_ok);
        for (const uint32_t number : {0U, 1U, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
            expectRefusalOfAll(number);
        }
        pl_EnableDTVEvents();
    });
}

TEST(Handles, NullPointersAreRefusedOnALiveCanvasAsWell) {
    expectQuiet([] {
        const uint32_t canvas = newCanvas(10, 10);
        uint32_t size = 0;
        expectAll(
            e_pl_status_invalid_argument,
            {callWith(canvas, &pl_gfx_Canvas_FillRect), callWith(canvas, &pl_gfx_Canvas_ClearRect),
             callWith(canvas, &pl_gfx_Canvas_DrawRect), callWith(canvas, &pl_gfx_Canvas_SetClip),
             callWith(canvas, &pl_gfx_Canvas_GetClip), callWith(canvas, &pl_gfx_Canvas_GetColor),
             callWith(canvas, &pl_gfx_Canvas_DrawText),
             pl_gfx_Canvas_GetSize(canvas, &size, nullptr),
             pl_gfx_Canvas_ComposeScaled(canvas, canvas, nullptr, &kRect),
             pl_gfx_Canvas_ComposeScaled(canvas, canvas, &kRect, nullptr)});
    });
}

TEST(Handles, AreOfOneKindAndStaleOnceReleased) {
    expectQuiet([] {
        const uint32_t canvas = newCanvas(10, 10);
        const uint32_t font = newFont(20);
        const uint32_t store = storeOf("c");
        const uint32_t released = newCanvas(10, 10);
        EXPECT_EQ(pl_gfx_ReleaseCanvas(released), e_pl_status_ok);
        EXPECT_NE(newCanvas(10, 10), released);
        std::string value;
        uint32_t w = 7;
        uint32_t h = 7;
        expectAll(e_pl_status_invalid_handle,
                  {pl_gfx_Canvas_FillRect(font, &kRect), pl_gfx_Canvas_FillRect(store, &kRect),
                   pl_gfx_Canvas_Compose(canvas, font, 0, 0, nullptr),
                   pl_gfx_Canvas_Compose(canvas, store, 0, 0, nullptr), pl_gfx_ReleaseCanvas(font),
                   pl_gfx_ReleaseCanvas(store), pl_gfx_Canvas_SetFont(canvas, canvas),
                   pl_gfx_ReleaseFont(canvas), pl_persistent_GetValue(canvas, "k", value),
                   pl_gfx_ReleaseCanvas(released), pl_gfx_Canvas_FillRect(released, &kRect),
                   pl_gfx_Canvas_GetSize(released, &w, &h)});
        EXPECT_EQ(w, 7U);
        EXPECT_EQ(pl_gfx_Canvas_SetFont(canvas, font), e_pl_status_ok);
        EXPECT_EQ(pl_gfx_Canvas_FillRect(canvas, &kRect), e_pl_status_ok);
    });
}

TEST(Handles, FontThatIsReleasedWhileSetTakesTextAway) {
    expectQuiet([] {
        const uint32_t canvas = newCanvas(10, 10);
        uint32_t w = 0;
        uint32_t h = 0;
        EXPECT_EQ(pl_gfx_Canvas_MeasureText(canvas, "x", &w, &h), e_pl_status_wrong_state);
        const uint32_t font = newFont(20);
        pl_gfx_Canvas_SetFont(canvas, font);
        EXPECT_EQ(pl_gfx_Canvas_MeasureText(canvas, "x", &w, &h), e_pl_status_ok);
        EXPECT_GT(w, 0U);
        EXPECT_GE(h, 20U);
        EXPECT_EQ(pl_gfx_ReleaseFont(font), e_pl_status_ok);
        expectAll(e_pl_status_invalid_handle,
                  {pl_gfx_ReleaseFont(font), pl_gfx_Canvas_SetFont(canvas, font)});
        expectAll(e_pl_status_wrong_state, {pl_gfx_Canvas_MeasureText(canvas, "x", &w, &h),
                                            pl_gfx_Canvas_DrawText(canvas, 0, 0, "x")});
    });
}

TEST(Handles, TargetIsOneUntilReleasedAndKeepsItsPixels) {
    Station station;
    station.setVariable("QUIRAVENT_SCREENSHOT", station / "none.png");
    station.expectQuiet([] {
        const uint32_t first = target();
        EXPECT_EQ(target(), first);
        EXPECT_EQ(sizeOf(first), std::make_pair(1280U, 720U));
        pl_gfx_Canvas_SetColor(first, {1, 2, 3, 4});
        const int32_t used = videoMemory().used;

        EXPECT_EQ(pl_gfx_ReleaseCanvas(first), e_pl_status_ok);
        EXPECT_EQ(pl_gfx_Canvas_Flush(first, nullptr), e_pl_status_invalid_handle);
        const uint32_t second = target();
        EXPECT_NE(second, first);
        s_pl_gfx_color color{};
        pl_gfx_Canvas_GetColor(second, &color);
        EXPECT_EQ(color.r, 255);
        EXPECT_EQ(videoMemory().used, used);
    });
}

}  // namespace
