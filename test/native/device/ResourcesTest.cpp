// Memory, loading and starting of the device, through the C interface.

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "common/callWith.h"
#include "device/Station.h"
#include "device/handles.h"

namespace {

TEST(VideoMemory, IsCountedAndLimited) {
    Station station;
    station.setVariable("QUIRAVENT_VIDEO_MEMORY", "8 MiB");
    const ChildOutcome outcome = station.run([] {
        EXPECT_EQ(videoMemory().used, 0);
        EXPECT_EQ(videoMemory().free, 8 << 20);
        std::vector<uint32_t> canvases;
        uint32_t handle = 0;
        while (pl_gfx_CreateCanvas(1000, 500, &handle) == e_pl_status_ok) {
            canvases.push_back(handle);
        }
        EXPECT_EQ(canvases.size(), 4U);
        EXPECT_EQ(videoMemory().used + videoMemory().free, 8 << 20);
        EXPECT_GE(videoMemory().used, 4 * 1000 * 500 * 4);
        for (const uint32_t canvas : canvases) pl_gfx_ReleaseCanvas(canvas);
        EXPECT_EQ(videoMemory().used, 0);
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors.substr(0, outcome.errors.find(':', 60)),
              "quiravent: warning: pl_gfx_CreateCanvas: no memory for a canvas of 1000 by 500 "
              "pixels");
    EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1);
}

TEST(VideoMemory, FigureThatIsTooLargeIsTheLargest) {
    Station station;
    station.setVariable("QUIRAVENT_VIDEO_MEMORY", "3 GiB");
    station.expectQuiet([] { EXPECT_EQ(videoMemory().free, INT32_MAX); });
}

TEST(CreateCanvas, RefusesSizesThatNoCanvasHas) {
    const ChildOutcome outcome = Station().run([] {
        const uint32_t sizes[][2] = {{0, 5}, {5, 0}, {0xffffffff, 1}, {1, 16385}};
        for (const auto& size : sizes) {
            uint32_t handle = 7;
            EXPECT_EQ(pl_gfx_CreateCanvas(size[0], size[1], &handle), e_pl_status_invalid_argument);
            EXPECT_EQ(handle, 7U);
        }
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors.substr(0, outcome.errors.find('\n')),
              "quiravent: warning: pl_gfx_CreateCanvas: a canvas can't be 0 by 5 pixels; each side "
              "may be 1 to 16384");
}

TEST(Load, GivesPicturesAndTellsWhyNot) {
    const Station station;
    const std::string picture = makePicture(station);
    const ChildOutcome outcome = station.run([&] {
        uint32_t handle = 0;
        EXPECT_EQ(pl_gfx_LoadImage(picture.c_str(), &handle), e_pl_status_ok);
        EXPECT_EQ(sizeOf(handle), std::make_pair(1280U, 720U));
        handle = 0;
        for (const char* wrong : {"/none\n/picture.png", TEST_FONT, ""})
            EXPECT_NE(pl_gfx_LoadImage(wrong, &handle), e_pl_status_ok) << wrong;
        for (const char* wrong : {"/none.ttf", picture.c_str()})
            EXPECT_NE(pl_gfx_LoadFont(wrong, 9, &handle), e_pl_status_ok) << wrong;
        EXPECT_EQ(pl_gfx_LoadFont(TEST_FONT, 0, &handle), e_pl_status_invalid_argument);
        EXPECT_EQ(handle, 0U);
        EXPECT_EQ(pl_gfx_LoadFont("file://" TEST_FONT, 255, &handle), e_pl_status_ok);
    });
    EXPECT_EQ(outcome.status, 0);
    const std::string image = "quiravent: warning: pl_gfx_LoadImage: cannot ";
    const std::string font = "quiravent: warning: pl_gfx_LoadFont: ";
    const std::string lines[] = {
        image + "read '/none?/picture.png': no such file",
        image + "load image '" TEST_FONT "': it is none of a PNG, JPEG and WebP picture",
        image + "read '': the location is empty",
        font + "cannot read '/none.ttf': no such file",
        font + "cannot load font '" + picture + "': it is neither a TrueType nor an OpenType font",
        font + "a font can't be 0 pixels high; allowed: 1 to 255",
    };
    std::string expected;
    for (const std::string& line : lines) expected.append(line).append("\n");
    EXPECT_EQ(outcome.errors, expected);
}

TEST(Start, WithAWrongConfigurationRefusesEverythingAndSaysWhyOnce) {
    Station station;
    std::ofstream(station / "a\n\t\x1b.json") << R"({"screen": {"driver": "crt"}})";
    station.setVariable("QUIRAVENT_CONFIG", station / "a\n\t\x1b.json");
    const ChildOutcome outcome = station.run([] {
#define PL_FUNCTION(result, name, parameters, arguments) \
    EXPECT_NE(callWith(1, &(name)), 0) << #name;
#include "porting/pl_functions.def"
        uint32_t handle = 0;
        EXPECT_EQ(pl_gfx_GetTargetCanvas(&handle), e_pl_status_unavailable);
        EXPECT_EQ(handle, 0U);
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors,
              "quiravent: error: " + (station / R"(a\n\t\x1b.json)") +
                  R"(: screen.driver is "crt"; allowed: "auto", "window", "headless")"
                  "\n");
}

TEST(Start, LogLevelDecidesWhatIsTold) {
    const std::map<std::string, std::string> lines{
        {"silent", ""},
        {"warning", ""},
        {"info", "quiravent: info: pl_dtv_Demux_closeFilter was called; this device has none\n"},
    };
    for (const auto& [level, line] : lines) {
        Station station;
        station.setVariable("QUIRAVENT_LOG", level);
        const ChildOutcome outcome = station.run([] {
            EXPECT_EQ(pl_input_init(), e_pl_status_ok);
            EXPECT_EQ(pl_dtv_Demux_closeFilter(1), e_pl_status_unavailable);
        });
        EXPECT_EQ(outcome.errors, line) << level;
    }
}

TEST(Stores, ThatCannotBeOpenedAreToldAndLeaveTheRestWorking) {
    Station station;
    std::ofstream(station / "store") << "a file";
    const ChildOutcome outcome = station.run([] {
        unsigned int store = 0;
        EXPECT_EQ(pl_persistent_GetPersistent(&store, "c"), e_pl_status_io_error);
        EXPECT_EQ(store, 0U);
        EXPECT_NE(target(), 0U);
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors,
              "quiravent: warning: pl_persistent_GetPersistent: " + (station / "store") +
                  "/values.sqlite: the file can't be made: Not a directory; name another folder "
                  "with storage.folder or QUIRAVENT_STORAGE\n");
}

}  // namespace
