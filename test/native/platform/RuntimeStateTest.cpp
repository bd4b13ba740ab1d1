#include "platform/RuntimeState.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <vector>

namespace quiravent::desktop {
namespace {

std::vector<e_pl_platform_runtime_state> s_told;
std::vector<std::thread::id> s_threads;

void note(e_pl_platform_runtime_state state) {
    s_told.push_back(state);
    s_threads.push_back(std::this_thread::get_id());
}

class RuntimeStateTest : public testing::Test {
  protected:
    RuntimeStateTest() {
        s_told.clear();
        s_threads.clear();
    }

    /// What has been told of all that was asked for.
    const std::vector<e_pl_platform_runtime_state>& told() {
        std::promise<void> done;
        m_events.post([&](int64_t) { done.set_value(); });
        done.get_future().wait();
        return s_told;
    }

    EventThread m_events{"test"};
    RuntimeState m_state{m_events};
};

TEST_F(RuntimeStateTest, ChangesAreToldOnceInOrderByAnotherThread) {
    EXPECT_EQ(m_state.get(), e_pl_platform_runtime_state_running);
    m_state.setCallback(note);
    m_state.set(e_pl_platform_runtime_state_running);
    std::vector<e_pl_platform_runtime_state> all;
    for (uint32_t number = 0; number < RuntimeState::names().size(); ++number) {
        const auto state = static_cast<e_pl_platform_runtime_state>(number);
        all.push_back(state);
        m_state.set(state);
        m_state.set(state);
        EXPECT_EQ(m_state.get(), state);
    }
    EXPECT_EQ(told(), all);
    for (const auto& thread : s_threads) EXPECT_NE(thread, std::this_thread::get_id());
}

TEST_F(RuntimeStateTest, WhatNobodyListensToIsDropped) {
    m_state.set(e_pl_platform_runtime_state_paused);
    told();
    m_state.setCallback(note);
    m_state.set(e_pl_platform_runtime_state_overlay);
    EXPECT_EQ(told(), std::vector{e_pl_platform_runtime_state_overlay});
}

TEST_F(RuntimeStateTest, ToldOrderIsThatOfTheChangesWhoeverMakesThem) {
    m_state.setCallback(note);
    const auto alternate = [&] {
        for (int turn = 0; turn < 1000; ++turn) {
            m_state.set(e_pl_platform_runtime_state_paused);
            m_state.set(e_pl_platform_runtime_state_running);
        }
    };
    std::thread other(alternate);
    alternate();
    other.join();
    const auto& changes = told();
    ASSERT_EQ(changes.size() % 2, 0U);
    for (size_t index = 0; index < changes.size(); ++index) {
        ASSERT_EQ(changes[index], static_cast<e_pl_platform_runtime_state>(index % 2)) << index;
    }
}

}  // namespace
}  // namespace quiravent::desktop
