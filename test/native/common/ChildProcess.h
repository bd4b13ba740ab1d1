#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <thread>

#include "threadStatus.h"

/// How a child process ended, and what it wrote to standard error.
struct ChildOutcome {
    int status = -1;  ///< as waitpid() gives it; 0: in good order, without a failed expectation
    std::string errors;
};

/// Whether every thread of this process but the one that asks waits for something.
inline bool othersWait() {
    const auto runs = [](const std::filesystem::path& thread) {
        const auto status = quiravent::test::threadStatus(thread);
        return status.empty() || status.front() != "S";
    };
    const std::filesystem::directory_iterator threads("/proc/self/task");
    return std::count_if(begin(threads), end(threads), runs) == 1;
}

/// Forks while no other thread does anything. The child has none of them, but for ever the locks
/// that they hold, of which the address sanitizer has some around its memory.
inline pid_t forkInQuiet() {
    while (!othersWait()) std::this_thread::yield();
    std::fflush(nullptr);
    return fork();
}

/// Runs a body in a child process, whose exit status is 0 when every expectation held.
inline pid_t startChild(const std::function<void()>& body) {
    const pid_t child = forkInQuiet();
    if (child == 0) {
        // What it throws must not come back into the tests of the parent.
        [&]() noexcept { body(); }();
        std::exit(testing::Test::HasFailure() ? 1 : 0);
    }
    return child;
}

/// Runs a body in a child process, which then exits in good order. For what happens once in a
/// process (start, configuration, end), and so that no test sees the device of another one.
/// variables: set in the child's environment.
inline ChildOutcome runInChild(const std::map<std::string, std::string>& variables,
                               const std::function<void()>& body) {
    std::FILE* const errors = std::tmpfile();
    const pid_t child = startChild([&] {
        dup2(fileno(errors), STDERR_FILENO);
        for (const auto& [name, value] : variables) setenv(name.c_str(), value.c_str(), 1);
        body();
    });
    ChildOutcome outcome;
    waitpid(child, &outcome.status, 0);
    std::rewind(errors);
    for (int byte = std::fgetc(errors); byte != EOF; byte = std::fgetc(errors)) {
        outcome.errors += static_cast<char>(byte);
    }
    std::fclose(errors);
    return outcome;
}
