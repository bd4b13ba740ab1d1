#pragma once

#include <pthread.h>

#include <thread>
#include <utility>

namespace quiravent::desktop {

/// Starts a thread that debuggers and `top` show under a name of at most 15 characters.
template <class Body>
std::thread startThread(const char* name, Body body) {
    return std::thread([name, run = std::move(body)]() mutable {
        pthread_setname_np(pthread_self(), name);
        run();
    });
}

}  // namespace quiravent::desktop
