#include "platform/EndSignals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <system_error>
#include <utility>

#include "support/DeviceError.h"
#include "support/NamedThread.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

using Actions = std::map<int, struct sigaction>;

/// Where the handler writes the signal's number, which is nearly all that it may do.
int s_handlerEnd = -1;
pid_t s_process = 0;

extern "C" void tellOfSignal(int signal) {
    // A child that was forked and not replaced ends by itself: the handler is for one time.
    if (::getpid() != s_process) {
        ::raise(signal);
        return;
    }
    const int before = errno;
    const auto number = static_cast<unsigned char>(signal);
    [[maybe_unused]] const ssize_t written = ::write(s_handlerEnd, &number, sizeof number);
    errno = before;
}

bool endsProcess(const struct sigaction& action) {
    const bool isHandledOnce = (static_cast<unsigned>(action.sa_flags) & SA_RESETHAND) != 0;
    return action.sa_handler == SIG_DFL || (isHandledOnce && action.sa_handler != SIG_IGN);
}

/// \return the actions that were replaced
Actions installHandlers() {
    struct sigaction tell = {};
    tell.sa_handler = tellOfSignal;
    tell.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    Actions replaced;
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
        struct sigaction before = {};
        if (::sigaction(signal, nullptr, &before) != 0 || !endsProcess(before)) continue;
        if (::sigaction(signal, &tell, nullptr) == 0) replaced[signal] = before;
    }
    return replaced;
}

int nextSignal(int readingEnd) {
    unsigned char number = 0;
    while (::read(readingEnd, &number, sizeof number) != sizeof number) {
    }
    return number;
}

}  // namespace

void finishOnEndSignals(std::function<void()> finish) {
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        throw DeviceError(e_pl_status_no_memory,
                          joined("no pipe for signals: ", std::generic_category().message(errno)));
    }
    s_handlerEnd = ends[1];
    s_process = ::getpid();
    const Actions replaced = installHandlers();
    startThread("end signals", [replaced, readingEnd = ends[0], finish = std::move(finish)] {
        const int signal = nextSignal(readingEnd);
        finish();
        ::sigaction(signal, &replaced.at(signal), nullptr);
        ::kill(::getpid(), signal);
    }).detach();
}

}  // namespace quiravent::desktop
