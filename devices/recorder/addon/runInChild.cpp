#include "runInChild.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>

namespace quiravent::recorder {
namespace {

/// A file without a name, for what one of the child's descriptors takes.
class Capture {
  public:
    void replace(int descriptor) const { dup2(fileno(m_file.get()), descriptor); }

    std::string text() const {
        std::string text;
        std::rewind(m_file.get());
        for (int byte = std::fgetc(m_file.get()); byte != EOF; byte = std::fgetc(m_file.get())) {
            text += static_cast<char>(byte);
        }
        return text;
    }

  private:
    static std::FILE* open() {
        std::FILE* const file = std::tmpfile();
        if (!file) throw std::system_error(errno, std::generic_category(), "tmpfile");
        return file;
    }

    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Close> m_file{open()};
};

/// Gives children all memory of this process: script runtimes have their heap kept from them.
void shareAllMemory() {
    std::ifstream mappings("/proc/self/maps");
    for (std::string line; std::getline(mappings, line);) {
        void* from = nullptr;
        void* to = nullptr;
        if (std::sscanf(line.c_str(), "%p-%p", &from, &to) != 2) continue;
        // The system's own pages refuse, and every child has them anyway.
        (void)madvise(from, static_cast<char*>(to) - static_cast<char*>(from), MADV_DOFORK);
    }
}

}  // namespace

ChildEnd runInChild(unsigned seconds, const std::function<void()>& act) {
    const Capture output;
    const Capture errors;
    shareAllMemory();
    const pid_t child = fork();
    if (child < 0) throw std::system_error(errno, std::generic_category(), "fork");
    if (child == 0) {
        alarm(seconds);
        output.replace(STDOUT_FILENO);
        errors.replace(STDERR_FILENO);
        act();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ChildEnd end;
    if (WIFEXITED(status)) end.code = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) end.signal = WTERMSIG(status);
    end.output = output.text();
    end.errors = errors.text();
    return end;
}

}  // namespace quiravent::recorder
