#include "display/Screen.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>

#include "common/TemporaryFolder.h"
#include "display/drivers.h"
#include "graphics/TestPixels.h"

namespace quiravent::desktop {
namespace {

constexpr uint32_t kHalfWhite = 0x80808080;

std::unique_ptr<Screen> newScreen(const std::string& capture = "") {
    return std::make_unique<Screen>(createDisplayDriver("headless", {}), CapturePattern(capture));
}

size_t filesIn(const TemporaryFolder& folder) {
    return static_cast<size_t>(
        std::distance(std::filesystem::directory_iterator(folder.path()), {}));
}

TEST(Screen, ShowsOnlyTheFlushedPartOverBlack) {
    constexpr int64_t kFar = int64_t{1} << 33;
    const struct {
        Box part;
        bool isFrame;
    } cases[] = {
        {{10, 20, 40, 60}, true},    {{-5, -5, 5, 5}, true},       {{1270, 710, 9999, 9999}, true},
        {{-kFar, 0, kFar, 1}, true}, {{1280, 0, 1300, 10}, false}, {{-10, 0, 0, 10}, false},
        {{5, 5, 5, 50}, false},      {{50, 50, 5, 5}, false},
    };
    for (const auto& each : cases) {
        const auto screen = newScreen();
        screen->present(*test::newSurface(Screen::kWidth, Screen::kHeight, kHalfWhite), each.part);
        EXPECT_EQ(screen->frameCount(), each.isFrame ? 1U : 0U);
        const auto picture = screen->compose();
        EXPECT_TRUE(picture->isOpaque());
        for (uint32_t y = 0; y < Screen::kHeight; ++y) {
            for (uint32_t x = 0; x < Screen::kWidth; ++x) {
                const bool inside = x >= each.part.left && x < each.part.right &&
                                    y >= each.part.top && y < each.part.bottom;
                ASSERT_EQ(picture->row(y)[x], inside ? 0xff808080 : 0xff000000) << x << ' ' << y;
            }
        }
    }
}

TEST(Screen, CaptureThatFailsIsToldAndLeavesNothing) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "taken.png");
    for (const std::string& file : {folder / "none/picture.png", folder / "taken.png"}) {
        testing::internal::CaptureStderr();
        newScreen(file)->finish();
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
    newScreen(file)->finish();
    EXPECT_EQ(std::filesystem::file_size(folder / "victim"), 4U);
    EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(file)));
    EXPECT_EQ(filesIn(folder), 2U);
}

TEST(CapturePattern, TakesOneNumberInTheName) {
    // With the file of frame 42.
    const std::pair<const char*, const char*> valid[] = {
        {"a.png", "a.png"},
        {"%d", "42"},
        {"/100%d/f-%d.png", "/100%d/f-42.png"},
        {"f%06d.png", "f000042.png"},
        {"%01d", "42"},
        {"%%d%d%%", "%d42%"},
        {"%%", "%"},
        {"", ""},
    };
    for (const auto& [pattern, file] : valid) {
        EXPECT_TRUE(CapturePattern::isValid(pattern)) << pattern;
        EXPECT_EQ(CapturePattern(pattern).fileFor(42), file);
    }
    for (const char* wrong :
         {"%", "%6d", "%00d", "%012d", "%d%d", "a%", "%s", "folder/", "%0", "%06"}) {
        EXPECT_FALSE(CapturePattern::isValid(wrong)) << wrong;
    }
}

}  // namespace
}  // namespace quiravent::desktop
