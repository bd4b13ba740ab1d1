#include "input/RemoteControl.h"

#include <gtest/gtest.h>

#include <future>
#include <set>
#include <string>
#include <thread>

#include "common/Watched.h"

namespace quiravent::desktop {
namespace {

using namespace std::chrono_literals;

struct Told {
    std::string events;  ///< "+13" a press of key 13, "-13" its release
    std::set<std::thread::id> threads;
};
test::Watched<Told> s_told;
std::promise<void>* s_stopped = nullptr;

void note(char sign, pl_input_keycode code) {
    s_told.change([=](Told& told) {
        told.events += sign + std::to_string(code);
        told.threads.insert(std::this_thread::get_id());
    });
}

class RemoteControlTest : public testing::Test {
  protected:
    RemoteControlTest() {
        s_told.change([](Told& told) { told = {}; });
    }
    ~RemoteControlTest() override { m_remote.stop(); }

    void registerBoth() {
        m_remote.setPressCallback([](pl_input_keycode code) { note('+', code); });
        m_remote.setReleaseCallback([](pl_input_keycode code) { note('-', code); });
    }

    /// What has been told, since the last time, of all that was asked for.
    std::string told() {
        std::promise<void> done;
        m_remote.keyUp(-1, [&] { done.set_value(); });
        done.get_future().wait();
        std::string events;
        s_told.change([&](Told& told) { events.swap(told.events); });
        return events;
    }

    std::string press(int32_t code, std::chrono::milliseconds hold) {
        std::promise<void> done;
        m_remote.press(code, hold, [&] { done.set_value(); });
        done.get_future().wait();
        return told();
    }

    RemoteControl m_remote;
};

TEST_F(RemoteControlTest, TellsInOrderByOneThreadOfItsOwn) {
    registerBoth();
    std::string expected;
    for (int32_t code = 100; code < 150; ++code) {
        m_remote.keyDown(code);
        m_remote.keyUp(code);
        expected += '+' + std::to_string(code) + '-' + std::to_string(code);
    }
    EXPECT_EQ(told(), expected);
    const auto threads = s_told.get().threads;
    EXPECT_EQ(threads.size(), 1U);
    EXPECT_EQ(threads.count(std::this_thread::get_id()), 0U);
}

TEST_F(RemoteControlTest, OnlyTheHeldKeyThatWentDownLastRepeats) {
    registerBoth();
    EXPECT_EQ(press(5, 0ms), "+5-5");
    EXPECT_EQ(press(6, 500ms), "+6-6");
    m_remote.keyDown(1);
    EXPECT_EQ(press(7, 701ms), "+1+7+7+7+7-7");
    m_remote.keyUp(1);
    EXPECT_EQ(told(), "-1");
}

TEST_F(RemoteControlTest, WhatIsDownGoesDownNoMoreAndWhatIsUpNotUp) {
    m_remote.keyDown(3);
    EXPECT_EQ(told(), "") << "nobody listens";
    registerBoth();
    m_remote.keyUp(3);
    m_remote.keyUp(9);
    m_remote.keyDown(9);
    m_remote.keyDown(9);
    m_remote.press(9, 0ms);
    m_remote.keyUp(9);
    EXPECT_EQ(told(), "+9-9");
}

TEST_F(RemoteControlTest, MaskWithholdsKeysFromTheirPressToTheirRelease) {
    registerBoth();
    m_remote.keyDown(37);
    EXPECT_EQ(told(), "+37");
    m_remote.mask().set(uint64_t{1} << 37 | 1U << 13, false);
    m_remote.keyUp(37);
    for (const int32_t code : {37, 13, 38, 64, 77, -27}) m_remote.press(code, 0ms);
    EXPECT_EQ(told(), "-37+38-38+64-64+77-77+-27--27");
    m_remote.keyDown(13);
    EXPECT_EQ(told(), "");
    m_remote.mask().set(uint64_t{1} << 13, true);
    m_remote.keyUp(13);
    EXPECT_EQ(press(13, 0ms), "+13-13");
}

TEST_F(RemoteControlTest, CallbackMayUseTheRemoteControlAndStopIt) {
    static RemoteControl* const remote = &m_remote;
    registerBoth();
    m_remote.setPressCallback([](pl_input_keycode code) {
        note('+', code);
        if (code == 1) remote->keyUp(1);
        if (code != 2) return;
        remote->stop();
        s_stopped->set_value();
    });
    m_remote.keyDown(1);
    const std::string begun = told();  // by then the callback has posted the release
    EXPECT_EQ(begun + told(), "+1-1");
    std::promise<void> stopped;
    s_stopped = &stopped;
    m_remote.keyDown(2);
    m_remote.keyUp(2);
    stopped.get_future().wait();
    m_remote.stop();
    EXPECT_EQ(s_told.get().events, "+2");
}

}  // namespace
}  // namespace quiravent::desktop
