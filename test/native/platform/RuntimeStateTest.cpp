#include "platform/RuntimeState.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <vector>

namespace quiravent::desktop {
namespace {

using States = std::vector<e_pl_platform_runtime_state>;

States s_told;
std::thread::id s_thread;

void note(e_pl_platform_runtime_state state) {
    s_told.push_back(state);
    s_thread = std::this_thread::get_id();
}

class RuntimeStateTest : public testing::Test {
  protected:
    RuntimeStateTest() { s_told.clear(); }

    /// What has been told of all that was asked for.
    const States& told() {
        std::promise<void> done;
        m_events.post([&](int64_t) { done.set_value(); });
        done.get_future().wait();
        return s_told;
    }

    EventThread m_events{"test"};
    RuntimeState m_state{m_events};
};

TEST_F(RuntimeStateTest, ChangesAreToldOnceToThoseWhoListenByAnotherThread) {
    EXPECT_EQ(m_state.get(), e_pl_platform_runtime_state_running);
    m_state.set(e_pl_platform_runtime_state_paused);
    EXPECT_EQ(told(), States{});
    m_state.setCallback(note);
    m_state.set(e_pl_platform_runtime_state_paused);
    m_state.set(e_pl_platform_runtime_state_overlay);
    m_state.set(e_pl_platform_runtime_state_overlay);
    EXPECT_EQ(m_state.get(), e_pl_platform_runtime_state_overlay);
    EXPECT_EQ(told(), States{e_pl_platform_runtime_state_overlay});
    EXPECT_NE(s_thread, std::this_thread::get_id());
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
