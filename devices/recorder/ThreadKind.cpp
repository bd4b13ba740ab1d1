#include "ThreadKind.h"

#include <pthread.h>

#include <array>
#include <thread>

namespace quiravent::recorder {
namespace {

std::string nameOf(pthread_t thread) {
    std::array<char, 16> name{};  // the longest name there is, with its terminator
    pthread_getname_np(thread, name.data(), name.size());
    return name.data();
}

const pthread_t scriptThread = pthread_self();
thread_local bool isDeviceThread = false;

}  // namespace

std::string threadKind() {
    if (isDeviceThread) return "device";
    if (pthread_equal(pthread_self(), scriptThread) != 0) return "script";
    std::string name = nameOf(pthread_self());
    // A thread that nobody names inherits the name of the one that made it.
    if (name == nameOf(scriptThread) || name == "libuv-worker") return "pool";
    return name;
}

void becomeDeviceThread() {
    isDeviceThread = true;
    pthread_setname_np(pthread_self(), "recorder");
}

}  // namespace quiravent::recorder
