#include "platform/StandardStreams.h"

#include <fcntl.h>
#include <signal.h>

#include <cstdio>

namespace quiravent::desktop {

namespace {

std::optional<termios> terminalModes(int stream) {
    termios modes = {};
    if (::tcgetattr(stream, &modes) != 0) return std::nullopt;
    return modes;
}

/// Without being stopped where the process isn't in the terminal's foreground.
void setTerminalModes(int stream, const termios& modes) {
    sigset_t stop;
    sigset_t before;
    ::sigemptyset(&stop);
    ::sigaddset(&stop, SIGTTOU);
    ::pthread_sigmask(SIG_BLOCK, &stop, &before);
    ::tcsetattr(stream, TCSANOW, &modes);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace

StandardStreams::StandardStreams() {
    for (int stream = 0; stream < 3; ++stream) {
        m_modes.at(stream) = {::fcntl(stream, F_GETFL), terminalModes(stream)};
    }
}

void StandardStreams::restore() const {
    std::fflush(stdout);
    std::fflush(stderr);
    for (int stream = 0; stream < 3; ++stream) {
        const Modes& modes = m_modes.at(stream);
        if (modes.flags >= 0) ::fcntl(stream, F_SETFL, modes.flags);
        if (modes.terminal) setTerminalModes(stream, *modes.terminal);
    }
}

}  // namespace quiravent::desktop
