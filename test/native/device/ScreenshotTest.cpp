// From drawing calls to the picture of the screen, and the ends of a process.

#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>
#include <cmath>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>

#include "common/PngFile.h"
#include "device/Station.h"
#include "device/handles.h"

namespace {

void fill(uint32_t canvas, s_pl_gfx_color color, const s_pl_gfx_rect& rect) {
    EXPECT_EQ(pl_gfx_Canvas_SetColor(canvas, color), e_pl_status_ok);
    EXPECT_EQ(pl_gfx_Canvas_FillRect(canvas, &rect), e_pl_status_ok);
}

constexpr s_pl_gfx_color kRed{255, 0, 0, 255};
constexpr s_pl_gfx_color kGreen{0, 255, 0, 255};
constexpr s_pl_gfx_rect kScreen{0, 0, 1280, 720};

TEST(Screenshot, HasEachFrameAndNoneForOtherFlushes) {
    Station station;
    station.setVariable("QUIRAVENT_SCREENSHOT", station / "frame%d.png");
    station.expectQuiet([&] {
        const uint32_t screen = target();
        const uint32_t offScreen = newCanvas(1280, 720);
        fill(offScreen, kGreen, kScreen);
        EXPECT_EQ(pl_gfx_Canvas_Flush(offScreen, nullptr), e_pl_status_ok);
        const s_pl_gfx_rect empty{5, 5, 0, 9};
        EXPECT_EQ(pl_gfx_Canvas_Flush(screen, &empty), e_pl_status_ok);
        EXPECT_FALSE(std::filesystem::exists(station / "frame1.png"));

        EXPECT_EQ(pl_gfx_Canvas_Flush(screen, nullptr), e_pl_status_ok);
        EXPECT_EQ(pl_gfx_Canvas_Compose(screen, offScreen, 0xffffffff, 0, nullptr), e_pl_status_ok);
        EXPECT_EQ(pl_gfx_ReleaseCanvas(screen), e_pl_status_ok);
        EXPECT_EQ(pl_gfx_Canvas_Flush(target(), nullptr), e_pl_status_ok);
        const PngFile first(station / "frame1.png");
        EXPECT_EQ(first.width(), 1280U);
        EXPECT_EQ(first.height(), 720U);
        EXPECT_EQ(first.rgba(0, 0), 0x000000ffU);
        const PngFile second(station / "frame2.png");
        EXPECT_EQ(second.rgba(1278, 719), 0x00ff00ffU);
        EXPECT_EQ(second.rgba(1279, 719), 0x000000ffU);
        EXPECT_FALSE(std::filesystem::exists(station / "frame3.png"));
    });
}

TEST(Screenshot, TextAndShapesReachTheScreen) {
    Station station;
    station.setVariable("QUIRAVENT_SCREENSHOT", station / "text.png");
    station.expectQuiet([] {
        const uint32_t canvas = target();
        const char* const text = "\xe2\x96\x88\xe2\x96\x88\xe2\x96\x88";
        const double notANumber = std::nan("");
        expectAll(
            e_pl_status_ok,
            {pl_gfx_Canvas_SetFont(canvas, newFont(100)), pl_gfx_Canvas_SetRotation(canvas, -1e300),
             // A text that is turned by a right angle about its centre stands upright there.
             pl_gfx_Canvas_SetTextAlign(canvas, 1, 2), pl_gfx_Canvas_SetRotation(canvas, 90),
             pl_gfx_Canvas_DrawText(canvas, 640, 360, text),
             // So does one that would lie beyond the screen for the most part.
             pl_gfx_Canvas_SetTextAlign(canvas, 0, 2),
             pl_gfx_Canvas_DrawText(canvas, 1200, 360, text),
             pl_gfx_Canvas_DrawEllipse(canvas, 0, 100, 100, 50, 50, notANumber, 1)});
        expectAll(
            e_pl_status_invalid_argument,
            {pl_gfx_Canvas_SetTextAlign(canvas, 3, 0), pl_gfx_Canvas_SetTextAlign(canvas, 0, 4),
             pl_gfx_Canvas_SetRotation(canvas, notANumber),
             pl_gfx_Canvas_SetRotation(canvas, HUGE_VAL),
             pl_gfx_Canvas_SetOpacity(canvas, notANumber),
             pl_gfx_Canvas_SetPorterDuff(canvas, static_cast<e_pl_fgx_porter_duff>(12)),
             pl_gfx_Canvas_DrawEllipse(canvas, 2, 0, 0, 9, 9, 0, 1)});
        pl_gfx_Canvas_Flush(canvas, nullptr);
    });
    const PngFile picture(station / "text.png");
    const int white[][2] = {{640, 360}, {640, 260}, {1275, 460}, {100, 60}, {100, 140}};
    for (const auto& at : white) EXPECT_EQ(picture.rgba(at[0], at[1]), 0xffffffffU) << at[0];
    for (const int x : {740, 1210}) EXPECT_EQ(picture.rgba(x, 360), 0x000000ffU) << x;
}

TEST(ProcessEnd, IsOrderlyWhileThreadsDrawLoadAndStore) {
    Station station;
    const std::string picture = makePicture(station);
    station.setVariable("QUIRAVENT_SCREENSHOT", station / "end.png");
    const ChildOutcome outcome = station.run([&] {
        const uint32_t canvas = target();
        std::atomic<int> busy{0};
        std::atomic<bool> isEnding{false};
        const auto expectDone = [&isEnding](std::initializer_list<int32_t> statuses) {
            for (const int32_t& status : statuses) {
                const bool isOver = status == e_pl_status_unavailable && isEnding;
                EXPECT_EQ(isOver ? e_pl_status_ok : status, e_pl_status_ok)
                    << &status - statuses.begin();
            }
        };
        const auto keepBusy = [&](const std::function<void()>& work) {
            std::thread([&busy, work] {
                for (int time = 0; time < 3; ++time) work();
                for (++busy;; work()) continue;
            }).detach();
        };
        const auto load = [&] {
            uint32_t image = 0;
            uint32_t font = 0;
            const s_pl_gfx_rect part{0, 0, 9, 9};
            expectDone({pl_gfx_LoadImage(picture.c_str(), &image),
                        pl_gfx_LoadFont(TEST_FONT, 30, &font), pl_gfx_Canvas_SetFont(canvas, font),
                        pl_gfx_Canvas_Compose(canvas, image, 0, 0, &part), pl_gfx_ReleaseFont(font),
                        pl_gfx_ReleaseCanvas(image)});
        };
        keepBusy(load);
        keepBusy(load);
        keepBusy([&expectDone, canvas] {
            expectDone(
                {pl_gfx_Canvas_SetColor(canvas, kRed), pl_gfx_Canvas_FillRect(canvas, &kScreen)});
            pl_gfx_Canvas_DrawText(canvas, 100, 100, "beside");
            expectDone({pl_gfx_Canvas_Flush(canvas, nullptr)});
        });
        keepBusy([] {
            unsigned int store = 0;
            pl_persistent_GetPersistent(&store, "c");
            pl_persistent_SetValue(store, "k", "v");
        });
        while (busy < 4) std::this_thread::yield();
        isEnding = true;
        // The threads use what is on this stack, which exit() leaves alone.
        std::exit(testing::Test::HasFailure() ? 1 : 0);
    });
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(PngFile(station / "end.png").rgba(1279, 719), 0xff0000ffU);
    EXPECT_FALSE(std::filesystem::exists(station / "store/values.sqlite-wal"));
}

TEST(ProcessEnd, RefusesToDrawOnceTheDeviceIsOver) {
    const ChildOutcome outcome = Station().run([] {
        static uint32_t canvas = 0;
        // What is registered before the device is called after its end.
        std::atexit([] {
            const int32_t status = pl_gfx_Canvas_Flush(canvas, nullptr);
            if (status != e_pl_status_unavailable) _exit(1);
        });
        canvas = target();
        std::exit(pl_gfx_Canvas_Flush(canvas, nullptr));
    });
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
}

TEST(ProcessEnd, AtOnceBySignalIsThatSignalAndGivesNoPicture) {
    for (const int number : {SIGABRT, SIGKILL}) {
        Station station;
        station.setVariable("QUIRAVENT_SCREENSHOT", station / "end.png");
        const ChildOutcome outcome = station.run([number] {
            pl_gfx_Canvas_Flush(target(), nullptr);
            raise(number);
        });
        EXPECT_TRUE(WIFSIGNALED(outcome.status) && WTERMSIG(outcome.status) == number);
        EXPECT_EQ(outcome.errors, "");
        EXPECT_FALSE(std::filesystem::exists(station / "end.png"));
    }
}

TEST(ProcessEnd, OfAForkedChildLeavesThePictureToItsParent) {
    Station station;
    station.setVariable("QUIRAVENT_SCREENSHOT", station / "end.png");
    const ChildOutcome outcome = station.run([&] {
        pl_gfx_Canvas_Flush(target(), nullptr);
        const pid_t child = forkInQuiet();
        if (child == 0) std::exit(0);
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
        EXPECT_FALSE(std::filesystem::exists(station / "end.png"));
    });
    EXPECT_EQ(outcome.status, 0);
    // Sanitizers speak of the threads that a forked child hasn't.
    EXPECT_EQ(outcome.errors.find("quiravent"), std::string::npos) << outcome.errors;
    EXPECT_TRUE(std::filesystem::exists(station / "end.png"));
}

}  // namespace
