#include "platform/ThreadWait.h"

#include <sys/syscall.h>

#include <fstream>
#include <sstream>
#include <string>

#include "support/Text.h"

namespace quiravent::desktop {

namespace {

std::string taskFile(pid_t thread, const char* name) {
    return joined("/proc/self/task/", thread, '/', name);
}

std::string firstLine(const std::string& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line;
}

bool isWaitOnWord(long number) {
#ifdef SYS_futex_time64
    if (number == SYS_futex_time64) return true;
#endif
    return number == SYS_futex;
}

}  // namespace

pid_t joinedThread(std::string_view systemCall) {
    std::istringstream words{std::string(systemCall)};
    long number = -1;
    uint64_t address = 0;
    uint64_t operation = 0;
    uint64_t value = 0;
    words >> number >> std::hex >> address >> operation >> value;
    return words && isWaitOnWord(number) ? static_cast<pid_t>(value) : 0;
}

bool waitsForEndOfThread(pid_t waiter, std::string_view name) {
    const std::string systemCall = firstLine(taskFile(waiter, "syscall"));
    if (systemCall.empty()) return true;
    const pid_t awaited = joinedThread(systemCall);
    return awaited > 0 && firstLine(taskFile(awaited, "comm")) == name;
}

}  // namespace quiravent::desktop
