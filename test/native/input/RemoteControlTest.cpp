#include "input/RemoteControl.h"

#include <gtest/gtest.h>

#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quiravent::desktop {
namespace {

using namespace std::chrono_literals;

std::mutex s_mutex;
std::string s_told;  ///< "+13" a press of key 13, "-13" its release
std::vector<std::thread::id> s_threads;
std::promise<void>* s_stopped = nullptr;

void note(char sign, pl_input_keycode code) {
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_told += sign + std::to_string(code);
    s_threads.push_back(std::this_thread::get_id());
}

class RemoteControlTest : public testing::Test {
  protected:
    RemoteControlTest() {
        s_told.clear();
        s_threads.clear();
    }
    ~RemoteControlTest() override { m_remote.stop(); }

    void registerBoth() {
        m_remote.setPressCallback([](pl_input_keycode code) { note('+', code); });
        m_remote.setReleaseCallback([](pl_input_keycode code) { note('-', code); });
    }

    /// What has been told when all that was asked for is done.
    std::string told() {
        std::promise<void> done;
        m_remote.keyUp(-1, [&] { done.set_value(); });
        done.get_future().wait();
        const std::lock_guard<std::mutex> lock(s_mutex);
        return s_told;
    }

    void press(int32_t code, std::chrono::milliseconds hold) {
        std::promise<void> done;
        m_remote.press(code, hold, [&] { done.set_value(); });
        done.get_future().wait();
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
    for (const auto& thread : s_threads) {
        EXPECT_EQ(thread, s_threads.front());
        EXPECT_NE(thread, std::this_thread::get_id());
    }
}

TEST_F(RemoteControlTest, HeldKeyRepeatsAndIsReleasedOnce) {
    registerBoth();
    press(5, 0ms);
    EXPECT_EQ(told(), "+5-5");
    press(6, 500ms);
    EXPECT_EQ(told(), "+5-5+6-6");
    press(7, 701ms);
    EXPECT_EQ(told(), "+5-5+6-6+7+7+7+7-7");
}

TEST_F(RemoteControlTest, OnlyTheKeyThatWentDownLastRepeats) {
    registerBoth();
    m_remote.keyDown(1);
    press(2, 601ms);
    m_remote.keyUp(1);
    EXPECT_EQ(told(), "+1+2+2+2-2-1");
}

TEST_F(RemoteControlTest, WhatIsDownGoesDownNoMoreAndWhatIsUpNotUp) {
    registerBoth();
    m_remote.keyUp(9);
    m_remote.keyDown(9);
    m_remote.keyDown(9);
    m_remote.press(9, 0ms);
    m_remote.keyUp(9);
    EXPECT_EQ(told(), "+9-9");
}

TEST_F(RemoteControlTest, DropsWhatComesBeforeRegistration) {
    m_remote.keyDown(3);
    EXPECT_EQ(told(), "");
    registerBoth();
    m_remote.keyUp(3);
    m_remote.press(4, 0ms);
    EXPECT_EQ(told(), "+4-4");
}

TEST_F(RemoteControlTest, MaskWithholdsKeysFromTheirPressToTheirRelease) {
    registerBoth();
    m_remote.keyDown(37);
    EXPECT_EQ(told(), "+37");
    m_remote.mask().set(uint64_t{1} << 37 | 1U << 13, false);
    m_remote.keyUp(37);
    for (const int32_t code : {37, 13, 38, 64, 77, -27}) m_remote.press(code, 0ms);
    EXPECT_EQ(told(), "+37-37+38-38+64-64+77-77+-27--27");
    m_remote.keyDown(13);
    told();
    m_remote.mask().set(uint64_t{1} << 13, true);
    m_remote.keyUp(13);
    m_remote.press(13, 0ms);
    EXPECT_EQ(told(), "+37-37+38-38+64-64+77-77+-27--27+13-13");
}

TEST_F(RemoteControlTest, CallbackMayUseTheRemoteControlAndStopIt) {
    static RemoteControl* const remote = &m_remote;
    m_remote.setPressCallback([](pl_input_keycode code) {
        note('+', code);
        if (code == 1) remote->keyUp(1);
        if (code != 2) return;
        remote->stop();
        s_stopped->set_value();
    });
    m_remote.setReleaseCallback([](pl_input_keycode code) { note('-', code); });
    m_remote.keyDown(1);
    told();  // by then the callback has posted the release
    EXPECT_EQ(told(), "+1-1");
    std::promise<void> stopped;
    s_stopped = &stopped;
    m_remote.keyDown(2);
    m_remote.keyUp(2);
    stopped.get_future().wait();
    m_remote.stop();
    EXPECT_EQ(s_told, "+1-1+2");
}

}  // namespace
}  // namespace quiravent::desktop
