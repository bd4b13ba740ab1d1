// The window on an X server: what it shows, and what it tells of the keyboard.

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <set>

#include "common/ChildProcess.h"
#include "common/Watched.h"
#include "common/XServer.h"
#include "common/XWindow.h"
#include "display/Screen.h"
#include "display/drivers.h"
#include "display/window/CloseRequest.h"
#include "graphics/Scaler.h"
#include "graphics/TestPixels.h"
#include "support/DeviceError.h"
#include "support/Text.h"

// SDL keeps what it has of the desktop's message bus for as long as the process lives.
extern "C" {
__attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libdbus-1.so\n";
}
__attribute__((visibility("default"))) const char* __lsan_default_options() {
    return "print_suppressions=0";
}
}

namespace quiravent::desktop {
namespace {

using Pixels = XWindow::Pixels;
using Events = std::vector<std::string>;

constexpr Box kAll{0, 0, Screen::kWidth, Screen::kHeight};

/// Writes down what it is told.
class Viewer {
  public:
    /// Sets what stands for a key of the remote control; everything does where it is empty.
    void bind(const std::set<std::string>& names) {
        m_bound.change([&](auto& bound) { bound = names; });
    }

    DisplayInput input() {
        DisplayInput input;
        input.key = [this](const std::string& name, bool isDown) {
            if (!isBound(name)) return false;
            add(name + (isDown ? " down" : " up"));
            return true;
        };
        input.exitKey = [this](bool isDown) { add(isDown ? "Exit down" : "Exit up"); };
        input.terminate = [this] { add("terminate"); };
        return input;
    }

    /// All there is once there are so many, or after a minute.
    Events events(size_t count) const {
        m_events.waitUntil([=](const Events& all) { return all.size() >= count; },
                           std::chrono::minutes(1));
        return m_events.get();
    }

  private:
    bool isBound(const std::string& name) const {
        const auto bound = m_bound.get();
        return bound.empty() || bound.count(name) != 0;
    }

    void add(const std::string& event) {
        m_events.change([&](Events& all) { all.push_back(event); });
    }

    quiravent::test::Watched<std::set<std::string>> m_bound;
    quiravent::test::Watched<Events> m_events;
};

Pixels withoutAlpha(Pixels pixels) {
    for (uint32_t& pixel : pixels) pixel &= 0xffffff;
    return pixels;
}

struct Television {
    explicit Television(int depth = 24)
        : server(depth),
          screen(std::make_unique<Screen>(createDisplayDriver("window", viewer.input()),
                                          CapturePattern(""))) {}

    /// Flushes a part with pixels of all kinds, new ones each time.
    void flush(const Box& part) {
        random.fill(*target, false);
        screen->present(*target, part);
    }

    Pixels picture() const { return withoutAlpha(test::pixelsOf(*screen->compose())); }

    void press(const std::string& words) const {
        EXPECT_EQ(std::system(("xdotool " + words).c_str()), 0) << words;
    }

    XServer server;
    Viewer viewer;
    std::unique_ptr<Screen> screen;
    test::RandomPixels random;
    std::shared_ptr<Surface> target = test::newSurface(Screen::kWidth, Screen::kHeight);
    XWindow window{"Quiravent"};
};

uint32_t inSixteenBits(uint32_t pixel) {
    return (pixel >> 8 & 0xf800) | (pixel >> 5 & 0x07e0) | (pixel >> 3 & 0x001f);
}

/// The picture of the screen scaled to a view in a black window.
Pixels inWindow(const Screen& screen, unsigned width, unsigned height, const Box& view) {
    const auto picture = screen.compose();
    ScaleFilters filters;
    Scaler scaler(viewOf(*picture), {kAll, view}, view, filters);
    Pixels pixels(size_t{width} * height);
    for (int64_t y = view.top; y < view.bottom; ++y)
        scaler.scaleRow(y, pixels.data() + y * width + view.left);
    return withoutAlpha(pixels);
}

TEST(Window, ShowsThePixelsOfTheScreenInItsAspectAndNoOthers) {
    const struct {
        unsigned width;
        unsigned height;
        Box view;
    } cases[] = {
        {1280, 720, kAll},
        {640, 360, {0, 0, 640, 360}},
        {1600, 900, {0, 0, 1600, 900}},
        {1500, 720, {110, 0, 1390, 720}},
        {1280, 900, {0, 90, 1280, 810}},
        {333, 801, {0, 307, 333, 494}},
        {1600, 101, {710, 0, 889, 101}},
    };
    const Box parts[] = {kAll, {3, 5, 4, 6}, {601, 333, 777, 348}, {1270, 0, 1280, 720}};
    for (const int depth : {24, 16}) {
        Television television(depth);
        ASSERT_TRUE(television.window.exists());
        for (const auto& each : cases) {
            television.window.resize(each.width, each.height);
            for (const Box& part : parts) {
                television.flush(part);
                Pixels expected = inWindow(*television.screen, each.width, each.height, each.view);
                if (depth == 16) {
                    std::transform(expected.begin(), expected.end(), expected.begin(),
                                   inSixteenBits);
                }
                EXPECT_TRUE(television.window.waitFor(expected))
                    << each.width << " x " << each.height << " in " << depth << " bits, part from "
                    << part.left;
            }
        }
    }
}

TEST(Window, ShowsAgainWhatTheDisplayLost) {
    Television television;
    const auto showsThePicture = [&] { return television.window.waitFor(television.picture()); };
    television.window.wipe();
    EXPECT_TRUE(showsThePicture()) << "black before the first frame";
    television.flush(kAll);
    EXPECT_TRUE(showsThePicture());
    television.window.wipe();
    EXPECT_TRUE(showsThePicture()) << "after it was covered";
    television.window.hide();
    television.flush({10, 10, 60, 60});
    television.flush({700, 500, 800, 600});
    television.window.unhide();
    EXPECT_TRUE(showsThePicture()) << "after it was hidden";
}

TEST(Window, TellsOfKeysByName) {
    const auto pressed = [](const std::vector<std::string>& names) {
        Events events;
        for (const std::string& name : names) {
            events.push_back(name + " down");
            events.push_back(name + " up");
        }
        return events;
    };
    const struct {
        const char* layout;
        std::set<std::string> bound;
        const char* words;
        Events events;
    } cases[] = {
        {"us",
         {},
         "key Left Return a 7 F1 BackSpace Prior KP_Enter minus Escape",
         pressed({"Left", "Return", "A", "7", "F1", "Backspace", "PageUp", "Keypad Enter", "-",
                  "Escape"})},
        // The keyboard's repetition is taken for one press.
        {"us",
         {},
         "keydown Left keydown Left keydown Up keydown Left keyup Left keyup Up",
         {"Left down", "Up down", "Left up", "Up up"}},
        // By their place where their name is bound to nothing: the 1 of a French keyboard is had
        // with Shift; its A is where others have the Q, its comma where they have the M.
        {"fr",
         {"1", "A", "Left", "M"},
         "key ampersand key a key x key comma key Left",
         pressed({"1", "A", "M", "Left"})},
    };
    for (const auto& each : cases) {
        Television television;
        ASSERT_EQ(std::system(joined("setxkbmap -layout ", each.layout).c_str()), 0);
        television.viewer.bind(each.bound);
        television.press(each.words);
        EXPECT_EQ(television.viewer.events(each.events.size()), each.events) << each.words;
    }
}

TEST(Window, LetsGoOfKeysThatItHearsNoMoreOf) {
    Television television;
    television.press("keydown Left");
    television.viewer.events(1);
    television.window.takeFocusAway();
    EXPECT_EQ(television.viewer.events(2), (Events{"Left down", "Left up"}));
}

TEST(Window, LetsGoOfKeysWhenFinished) {
    Television television;
    television.press("keydown Down");
    television.viewer.events(1);
    television.window.askToClose();
    television.viewer.events(2);
    television.screen->finish();
    const Events expected{"Down down", "Exit down", "Down up", "Exit up"};
    EXPECT_EQ(television.viewer.events(4), expected);
    EXPECT_FALSE(XWindow("Quiravent").exists());
    television.flush(kAll);
    EXPECT_EQ(television.screen->frameCount(), 1U);
}

TEST(Window, DisplayThatGoesAwayIsToldAndTheScreenGoesOn) {
    for (const bool isServerGone : {false, true}) {
        const ChildOutcome outcome = runInChild({}, [&] {
            Television television;
            television.press("keydown Left");
            television.viewer.events(1);
            if (isServerGone) {
                television.server.end();
            } else {
                television.window.killConnection();
            }
            EXPECT_EQ(television.viewer.events(2), (Events{"Left down", "Left up"}));
            television.flush(kAll);
            television.flush(kAll);
            EXPECT_EQ(television.screen->frameCount(), 2U);
            television.screen.reset();
            // The test's own connection can't be closed in good order either.
            if (isServerGone) std::_Exit(testing::Test::HasFailure() ? 1 : 0);
        });
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.errors,
                  "quiravent: warning: going on without the window: the display is gone\n");
    }
}

TEST(Window, DisplayThatDoesNotAnswerKeepsNobodyWaiting) {
    Television television;
    television.server.pause();
    for (int count = 0; count < 3; ++count) television.flush(kAll);
    television.screen->finish();
    EXPECT_EQ(television.screen->frameCount(), 3U);
    television.server.resume();
}

TEST(DisplayDrivers, AreChosenByWhatTheEnvironmentOffers) {
    const struct {
        const char* name;
        const char* display;
        const char* refusal;  ///< null where there is a screen
        const char* told;
    } cases[] = {
        {"none", "", "there is no display driver \"none\"", ""},
        {"headless", "nowhere:0", nullptr, ""},
        {"auto", "", nullptr, ""},
        {"auto", "nowhere:0", nullptr,
         "quiravent: warning: the screen can't be shown by the driver \"window\", another one is "
         "taken: the display that DISPLAY or WAYLAND_DISPLAY names can't be opened: x11 not "
         "available\n"},
        {"window", "",
         "the screen can't be shown by the driver \"window\": neither DISPLAY nor "
         "WAYLAND_DISPLAY is set",
         ""},
        {"window", "nowhere:0",
         "the screen can't be shown by the driver \"window\": the display that DISPLAY or "
         "WAYLAND_DISPLAY names can't be opened: x11 not available",
         ""},
    };
    for (const auto& each : cases) {
        const std::map<std::string, std::string> variables{{"DISPLAY", each.display},
                                                           {"WAYLAND_DISPLAY", ""}};
        const ChildOutcome outcome = runInChild(variables, [&] {
            try {
                createDisplayDriver(each.name, {});
                EXPECT_EQ(each.refusal, nullptr);
            } catch (const DeviceError& error) {
                EXPECT_STREQ(error.what(), each.refusal);
            }
        });
        EXPECT_EQ(outcome.status, 0) << each.name << " on " << each.display;
        EXPECT_EQ(outcome.errors, each.told);
    }
}

TEST(CloseRequest, PressesExitAndThenInsists) {
    const Events pressed{"Exit down"};
    const Events over{"Exit down", "Exit up"};
    const struct {
        std::vector<int> asked;  ///< milliseconds
        int end;
        Events events;
    } cases[] = {
        {{0}, 4999, pressed},
        {{0}, 5000, over},
        {{0, 999}, 4999, pressed},
        {{0, 1000}, 1000, {"Exit down", "terminate"}},
        {{0, 2000, 3000}, 4000, {"Exit down", "terminate", "terminate"}},
        {{0, 4999}, 5000, {"Exit down", "terminate", "Exit up"}},
        {{0, 5000}, 5000, {"Exit down", "Exit up", "Exit down"}},
    };
    for (const auto& each : cases) {
        Viewer viewer;
        const DisplayInput input = viewer.input();
        CloseRequest request(input);
        const CloseRequest::Clock::time_point start{};
        for (const int time : each.asked) request.ask(start + std::chrono::milliseconds(time));
        request.advance(start + std::chrono::milliseconds(each.end));
        EXPECT_EQ(viewer.events(0), each.events);
    }
}

}  // namespace
}  // namespace quiravent::desktop
