#include "platform/ThreadWait.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <future>
#include <string>
#include <thread>

#include "support/NamedThread.h"

namespace quiravent::desktop {
namespace {

pid_t currentThread() { return static_cast<pid_t>(syscall(SYS_gettid)); }

TEST(ThreadWait, JoinedThreadIsReadFromTheSystemCall) {
    const std::string wait = std::to_string(SYS_futex);
    const std::pair<std::string, pid_t> cases[] = {
        {wait + " 0x7f1000 0x109 0x2a 0x0 0x0 0xffffffff 0x7ffd 0x7f22", 42},
        {wait + " 0x7f1000 0x189 0x0 0x0 0x0 0xffffffff 0x7ffd 0x7f22", 0},
        {"999999 0x7f1000 0x109 0x2a 0x0 0x0 0xffffffff 0x7ffd 0x7f22", 0},
        {wait, 0},
        {"running", 0},
        {"-1 0x7ffd 0x7f22", 0},
        {"", 0},
    };
    for (const auto& [line, thread] : cases) EXPECT_EQ(joinedThread(line), thread) << line;
}

TEST(ThreadWait, IsSeenOnlyWhileThatThreadIsJoined) {
    std::promise<void> end;
    std::thread reader = startThread("messageIPC", [&] { end.get_future().wait(); });
    std::promise<pid_t> id;
    std::promise<void> joining;
    std::thread waiter([&] {
        id.set_value(currentThread());
        joining.get_future().wait();
        reader.join();
    });
    const pid_t number = id.get_future().get();
    EXPECT_FALSE(waitsForEndOfThread(currentThread(), "messageIPC"));
    EXPECT_FALSE(waitsForEndOfThread(number, "messageIPC")) << "it waits for something else";
    joining.set_value();
    // The join is a matter of moments; that it is never seen is what the runner's patience is for.
    while (!waitsForEndOfThread(number, "messageIPC")) std::this_thread::yield();
    EXPECT_FALSE(waitsForEndOfThread(number, "message"));
    end.set_value();
    waiter.join();
}

}  // namespace
}  // namespace quiravent::desktop
