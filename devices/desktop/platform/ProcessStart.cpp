#include "platform/ProcessStart.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

std::vector<std::string> commandLine() {
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    std::vector<std::string> arguments;
    for (std::string argument; std::getline(file, argument, '\0');) arguments.push_back(argument);
    return arguments;
}

/// From the C library's variable `environ`, as the program sees it: where the program has a copy of
/// the variable, a library that is bound deeply would see the original, which isn't in use.
std::vector<std::string> currentEnvironment() {
    void* const program = ::dlopen(nullptr, RTLD_LAZY);
    auto* const variable = static_cast<char***>(::dlsym(program, "environ"));
    std::vector<std::string> texts;
    if (variable == nullptr || *variable == nullptr) return texts;
    for (char** text = *variable; *text != nullptr; ++text) texts.emplace_back(*text);
    return texts;
}

/// Empty where the folder is gone.
std::string currentFolder() {
    std::error_code failure;
    return std::filesystem::current_path(failure).string();
}

/// In the form that the exec functions take, which don't change the texts.
std::vector<char*> pointers(const std::vector<std::string>& texts) {
    std::vector<char*> list;
    list.reserve(texts.size() + 1);
    for (const std::string& text : texts) list.push_back(const_cast<char*>(text.c_str()));
    list.push_back(nullptr);
    return list;
}

[[noreturn]] void fail(const std::string& what) {
    throw DeviceError(e_pl_status_io_error, joined("the application can't be restarted: ", what,
                                                   ": ", std::generic_category().message(errno)));
}

/// Has all files but the standard ones, which runtimes mark like the others, closed with the
/// program.
void closeFilesOnExec() {
    const unsigned int first = STDERR_FILENO + 1;
    for (int number = 0; number <= STDERR_FILENO; ++number) ::fcntl(number, F_SETFD, 0);
    if (::close_range(first, ~0U, CLOSE_RANGE_CLOEXEC) == 0) return;
    // Kernels before 5.11.
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        const int number = std::atoi(entry.path().filename().c_str());
        if (number > STDERR_FILENO) ::fcntl(number, F_SETFD, FD_CLOEXEC);
    }
}

/// What a program inherits of signals: which are blocked, and which are ignored. Runtimes ignore
/// the one that tells of broken pipes.
void resetSignals() {
    sigset_t none;
    ::sigemptyset(&none);
    ::pthread_sigmask(SIG_SETMASK, &none, nullptr);
    ::signal(SIGPIPE, SIG_DFL);
}

}  // namespace

ProcessStart::ProcessStart()
    : m_arguments(commandLine()), m_environment(currentEnvironment()), m_folder(currentFolder()) {}

void ProcessStart::repeat() const {
    const std::vector<char*> arguments = pointers(m_arguments);
    const std::vector<char*> environment = pointers(m_environment);
    if (!m_folder.empty() && ::chdir(m_folder.c_str()) != 0) fail("its folder " + m_folder);
    closeFilesOnExec();
    resetSignals();
    ::execve("/proc/self/exe", arguments.data(), environment.data());
    fail("its program");
}

}  // namespace quiravent::desktop
