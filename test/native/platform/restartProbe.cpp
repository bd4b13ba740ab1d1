// restart_probe MARKER WORD...: at its first run, which makes the file MARKER, it changes what a
// program can change of itself and starts itself again; then it prints what it has begun with.

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>

#include "platform/ProcessStart.h"
#include "platform/StandardStreams.h"

namespace {

/// As runtimes do, and applications may.
void changeEverything() {
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, nullptr);
    signal(SIGPIPE, SIG_IGN);
    setenv("QUIRAVENT_PROBE", "changed", 1);
    setenv("QUIRAVENT_NEW", "yes", 1);
    for (int stream = 0; stream < 3; ++stream) {
        fcntl(stream, F_SETFD, FD_CLOEXEC);
        fcntl(stream, F_SETFL, fcntl(stream, F_GETFL) | O_NONBLOCK);
    }
    if (chdir("/") != 0 || open("/dev/null", O_RDONLY) < 3) std::abort();
}

void printBeginning(int count, char** words) {
    for (int index = 2; index < count; ++index) std::printf("[%s]", words[index]);
    sigset_t blocked;
    sigprocmask(SIG_SETMASK, nullptr, &blocked);
    struct sigaction pipeAction = {};
    sigaction(SIGPIPE, nullptr, &pipeAction);
    char* const folder = getcwd(nullptr, 0);
    std::printf(" in %s, %s %d, blocked %d, ignored %d, file 3 %d, non-blocking %d\n", folder,
                std::getenv("QUIRAVENT_PROBE"), std::getenv("QUIRAVENT_NEW") != nullptr,
                sigisemptyset(&blocked) == 0, pipeAction.sa_handler == SIG_IGN,
                fcntl(3, F_GETFD) >= 0, (fcntl(1, F_GETFL) & O_NONBLOCK) != 0);
    std::free(folder);
}

}  // namespace

int main(int count, char** words) {
    try {
        const int marker = open(words[1], O_CREAT | O_EXCL | O_CLOEXEC | O_WRONLY, 0600);
        if (marker < 0) {
            printBeginning(count, words);
            return 0;
        }
        const quiravent::desktop::ProcessStart start;
        const quiravent::desktop::StandardStreams streams;
        std::printf("before, ");
        changeEverything();
        streams.restore();
        start.repeat();
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
        return 1;
    }
}
