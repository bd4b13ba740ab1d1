#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

/// An X server without hardware on a free display, which is the process's DISPLAY as long as the
/// server lives.
class XServer {
  public:
    static constexpr unsigned kWidth = 1600;
    static constexpr unsigned kHeight = 900;

    explicit XServer(int depth = 24) {
        int ready[2];
        if (pipe(ready) != 0) throw std::runtime_error("no pipe");
        const std::string mode =
            std::to_string(kWidth) + "x" + std::to_string(kHeight) + "x" + std::to_string(depth);
        m_process = fork();
        if (m_process == 0) {
            const std::string descriptor = std::to_string(ready[1]);
            // It complains of displays that another server takes at the same time.
            std::freopen("/dev/null", "w", stderr);
            execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", mode.c_str(),
                   "-nolisten", "tcp", "-noreset", nullptr);
            _exit(127);
        }
        close(ready[1]);
        const std::string number = firstLine(ready[0]);
        close(ready[0]);
        if (number.empty()) throw std::runtime_error("Xvfb didn't start; is it installed?");
        setenv("DISPLAY", (":" + number).c_str(), 1);
        unsetenv("WAYLAND_DISPLAY");
    }

    ~XServer() { end(); }

    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    void end() {
        if (m_process < 0) return;
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
        m_process = -1;
        unsetenv("DISPLAY");
    }

    void pause() const { kill(m_process, SIGSTOP); }
    void resume() const { kill(m_process, SIGCONT); }

  private:
    static std::string firstLine(int descriptor) {
        std::string line;
        for (char byte = 0; read(descriptor, &byte, 1) == 1 && byte != '\n';) line += byte;
        return line;
    }

    pid_t m_process = -1;
};
