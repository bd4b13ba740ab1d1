#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

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
        const std::string descriptor = std::to_string(ready[1]);
        m_process = start({"Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", mode.c_str(),
                           "-nolisten", "tcp", "-noreset"});
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
    /// Starts a program without its complaints, here of displays that another server takes at the
    /// same time; -1 if it can't be started.
    static pid_t start(std::vector<const char*> words) {
        words.push_back(nullptr);
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        pid_t process = -1;
        posix_spawnp(&process, words[0], &files, nullptr, const_cast<char**>(words.data()),
                     environ);
        posix_spawn_file_actions_destroy(&files);
        return process;
    }

    static std::string firstLine(int descriptor) {
        std::string line;
        for (char byte = 0; read(descriptor, &byte, 1) == 1 && byte != '\n';) line += byte;
        return line;
    }

    pid_t m_process = -1;
};
