#include "display/Screen.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>

#include "common/PngFile.h"
#include "common/TemporaryFolder.h"
#include "display/drivers.h"
#include "support/DeviceError.h"

namespace quiravent::desktop {
namespace {

constexpr uint32_t kOpaqueRed = 0xffff0000;
constexpr uint32_t kHalfWhite = 0x80808080;
constexpr uint32_t kBlack = 0xff000000;
constexpr Box kAll{0, 0, Screen::kWidth, Screen::kHeight};

struct Television {
    explicit Television(const std::string& capture = "")
        : screen(createDisplayDriver("headless", {}), CapturePattern(capture)),
          pool(size_t{8} << 20),
          target(pool.create(Screen::kWidth, Screen::kHeight)) {}

    void show(uint32_t pixel, const Box& part) {
        for (uint32_t y = 0; y < Screen::kHeight; ++y) {
            std::fill_n(target->row(y), Screen::kWidth, pixel);
        }
        screen.present(*target, part);
    }

    Screen screen;
    SurfacePool pool;
    std::shared_ptr<Surface> target;
};

std::chrono::steady_clock::time_point now() { return std::chrono::steady_clock::now(); }

size_t filesIn(const TemporaryFolder& folder) {
    return static_cast<size_t>(
        std::distance(std::filesystem::directory_iterator(folder.path()), {}));
}

TEST(Screen, ShowsOnlyTheFlushedPart) {
    struct Case {
        Box part;
        bool isFrame;
    };
    constexpr int64_t kFar = int64_t{1} << 33;
    const Case cases[] = {
        {{10, 20, 40, 60}, true},    {{-5, -5, 5, 5}, true},       {{1270, 710, 9999, 9999}, true},
        {{-kFar, 0, kFar, 1}, true}, {{1280, 0, 1300, 10}, false}, {{-10, 0, 0, 10}, false},
        {{5, 5, 5, 50}, false},      {{50, 50, 5, 5}, false},
    };
    for (const Case& each : cases) {
        Television television;
        television.show(kOpaqueRed, each.part);
        EXPECT_EQ(television.screen.frameCount(), each.isFrame ? 1U : 0U);
        const auto picture = television.screen.compose();
        for (uint32_t y = 0; y < Screen::kHeight; ++y) {
            for (uint32_t x = 0; x < Screen::kWidth; ++x) {
                const bool inside = x >= each.part.left && x < each.part.right &&
                                    y >= each.part.top && y < each.part.bottom;
                ASSERT_EQ(picture->row(y)[x], inside ? kOpaqueRed : kBlack) << x << ' ' << y;
            }
        }
    }
}

TEST(Screen, PutsGraphicsOverBlack) {
    Television television;
    television.show(kHalfWhite, kAll);
    const auto picture = television.screen.compose();
    EXPECT_EQ(picture->row(719)[1279], 0xff808080);
    EXPECT_TRUE(picture->isOpaque());
    television.show(0, kAll);
    EXPECT_EQ(television.screen.compose()->row(719)[1279], kBlack);
}

TEST(Screen, FrameCanBeWaitedFor) {
    Television television;
    EXPECT_TRUE(television.screen.waitForFrame(0, now()));
    EXPECT_FALSE(television.screen.waitForFrame(1, now()));
    std::thread flusher([&] {
        for (int i = 0; i < 3; ++i) television.show(kOpaqueRed, kAll);
    });
    EXPECT_TRUE(television.screen.waitForFrame(3, now() + std::chrono::minutes(1)));
    flusher.join();
    EXPECT_EQ(television.screen.frameCount(), 3U);
}

TEST(Screen, WritesEachFrameUnderItsNumber) {
    const TemporaryFolder folder;
    Television television(folder / "50%% %03d.png");
    television.show(kOpaqueRed, kAll);
    television.show(kHalfWhite, kAll);
    television.screen.finish();
    const PngFile first(folder / "50% 001.png");
    const PngFile second(folder / "50% 002.png");
    EXPECT_EQ(first.width(), 1280U);
    EXPECT_EQ(first.height(), 720U);
    EXPECT_EQ(first.rgba(3, 4), 0xff0000ffU);
    EXPECT_EQ(second.rgba(1279, 719), 0x808080ffU);
    EXPECT_EQ(filesIn(folder), 2U);
}

TEST(Screen, CaptureThatFailsIsToldAndLeavesNothing) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "taken.png");
    for (const std::string& file : {folder / "none/picture.png", folder / "taken.png"}) {
        Television television(file);
        testing::internal::CaptureStderr();
        television.screen.finish();
        const std::string line = testing::internal::GetCapturedStderr();
        const std::string start =
            "quiravent: warning: the screen can't be written to " + file + ": ";
        EXPECT_EQ(line.substr(0, start.size()), start);
        EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1);
    }
    EXPECT_EQ(filesIn(folder), 1U);
}

TEST(Screen, CaptureWritesThroughNoLinkThatStandsInItsWay) {
    const TemporaryFolder folder;
    std::ofstream(folder / "victim") << "kept";
    const std::string file = folder / "picture.png";
    const std::string part = file + '.' + std::to_string(getpid()) + ".part";
    std::filesystem::create_symlink(folder / "victim", part);
    std::filesystem::create_symlink(folder / "victim", file);
    Television(file).screen.finish();
    EXPECT_EQ(std::filesystem::file_size(folder / "victim"), 4U);
    EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(file)));
    EXPECT_EQ(filesIn(folder), 2U);
}

TEST(CapturePattern, TakesOneNumberInTheName) {
    struct Case {
        const char* pattern;
        const char* file;  ///< of frame 42; null where the pattern isn't valid
    };
    const Case cases[] = {
        {"a.png", "a.png"},
        {"%d", "42"},
        {"/100%d/f-%d.png", "/100%d/f-42.png"},
        {"f%06d.png", "f000042.png"},
        {"%01d", "42"},
        {"%%d%d%%", "%d42%"},
        {"%%", "%"},
        {"%", nullptr},
        {"%6d", nullptr},
        {"%00d", nullptr},
        {"%012d", nullptr},
        {"%d%d", nullptr},
        {"a%", nullptr},
        {"%s", nullptr},
        {"folder/", nullptr},
        {"%0", nullptr},
        {"%06", nullptr},
        {"", ""},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(CapturePattern::isValid(each.pattern), each.file != nullptr) << each.pattern;
        if (each.file != nullptr) {
            EXPECT_EQ(CapturePattern(each.pattern).fileFor(42), each.file);
        }
    }
}

TEST(DisplayDrivers, UnknownNameIsRefused) {
    EXPECT_THROW(createDisplayDriver("none", {}), DeviceError);
    EXPECT_NE(createDisplayDriver("headless", {}), nullptr);
}

}  // namespace
}  // namespace quiravent::desktop
