// The platform and the remote control through the C interface, and the ends of the process.

#include "porting/pl_platform.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <utility>

#include "device/Station.h"
#include "device/handles.h"

namespace {

std::map<std::string, std::string> properties() {
    s_pl_platform_properties list = {};
    EXPECT_EQ(pl_platform_InitProperties(&list), e_pl_status_ok);
    std::map<std::string, std::string> all;
    for (uint32_t index = 0; index < list.count; ++index)
        all[list.keys[index]] = list.values[index];
    return all;
}

e_pl_platform_runtime_state state() {
    auto state = e_pl_platform_runtime_state_paused;
    EXPECT_EQ(pl_platform_GetRuntimeState(&state), e_pl_status_ok);
    return state;
}

TEST(Platform, PropertiesAreTheDefaultsAndThoseOfTheConfiguration) {
    Station station;
    station.setVariable("QUIRAVENT_PROPERTIES", R"({"system.model": "M", "app.key": ""})");
    station.expectQuiet([] {
        const auto all = properties();
        EXPECT_EQ(all.at("system.model"), "M");
        EXPECT_EQ(all.at("app.key"), "");
        EXPECT_EQ(all.at("system.manufacturer"), "Quiravent");
        EXPECT_EQ(properties(), all);
    });
}

TEST(Platform, StatesAndSwitchesAreKept) {
    expectQuiet([] {
        EXPECT_EQ(state(), e_pl_platform_runtime_state_running);
        EXPECT_EQ(pl_platform_SetRuntimeState(e_pl_platform_runtime_state_overlay), 0);
        EXPECT_EQ(pl_platform_SetRuntimeState(static_cast<e_pl_platform_runtime_state>(6)),
                  e_pl_status_invalid_argument);
        EXPECT_EQ(state(), e_pl_platform_runtime_state_overlay);
        for (const bool on : {true, true, false}) {
            uint8_t isOn = 7;
            EXPECT_EQ(pl_platform_ToggleLiveDTV(on), e_pl_status_ok);
            EXPECT_EQ(pl_platform_GetLiveDTVStatus(&isOn), e_pl_status_ok);
            EXPECT_EQ(isOn, on ? 1 : 0);
        }
        EXPECT_EQ(pl_platform_SetReferenceDate(0xffffffff), e_pl_status_ok);
        EXPECT_EQ(pl_input_UpdateKeyMask(0, 1, 2), e_pl_status_invalid_argument);
        EXPECT_EQ(pl_input_UpdateKeyMask(0, 1, 0), e_pl_status_ok);
    });
}

TEST(Platform, ExitAndRestartAreImmediate) {
    // A restart is left to the launcher where there is one.
    const std::pair<int32_t (*)(), int> cases[] = {{pl_platform_Exit, 0},
                                                   {pl_platform_Restart, 83}};
    for (const auto& [end, code] : cases) {
        Station station;
        station.setVariable("QUIRAVENT_LAUNCHER", "1");
        const ChildOutcome outcome = station.run([end = end] {
            // What would come later, or never, were it waited for.
            std::atexit([] { std::abort(); });
            properties();
            end();
            std::abort();
        });
        EXPECT_EQ(outcome.status, W_EXITCODE(code, 0));
        EXPECT_EQ(outcome.errors, "");
    }
}

TEST(Platform, SignalThatEndsTheProcessDoesSoAfterAnOrderlyEnd) {
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
        Station station;
        station.setVariable("QUIRAVENT_SCREENSHOT", station / "screen.png");
        const ChildOutcome outcome = station.run([signal] {
            // A runtime's way to tidy up.
            struct sigaction tidy = {};
            tidy.sa_handler = [](int number) { raise(number); };
            tidy.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
            if (signal != SIGHUP) sigaction(signal, &tidy, nullptr);
            pl_input_init();
            raise(signal);
            while (true) pause();
        });
        EXPECT_EQ(outcome.status, W_EXITCODE(0, signal));
        EXPECT_TRUE(std::filesystem::exists(station / "screen.png"));
    }
}

TEST(Platform, SignalThatIsHandledOrIgnoredIsLeftAlone) {
    expectQuiet([] {
        static volatile sig_atomic_t handled = 0;
        signal(SIGHUP, SIG_IGN);
        struct sigaction handle = {};
        handle.sa_handler = [](int) { handled = handled + 1; };
        sigaction(SIGTERM, &handle, nullptr);
        pl_input_init();
        raise(SIGHUP);
        raise(SIGTERM);
        raise(SIGTERM);
        EXPECT_EQ(handled, 2);
        EXPECT_EQ(pl_persistent_SetValue(storeOf("context"), "still", "there"), e_pl_status_ok);
    });
}

}  // namespace
