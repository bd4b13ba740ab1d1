#include "platform/ServiceSelectorPipe.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

bool isPipe(int number) {
    struct stat about = {};
    return ::fstat(number, &about) == 0 && S_ISFIFO(about.st_mode);
}

void checkToken(const char* what, const std::string& token) {
    constexpr std::string_view kSeparators("\n\0", 2);
    if (!token.empty() && token.find_first_of(kSeparators) == std::string::npos) return;
    throw DeviceError(
        e_pl_status_invalid_argument,
        joined(what, " is ", token.empty() ? "empty" : "of several lines or holds NUL",
               "; allowed: a text of one line"));
}

}  // namespace

ServiceSelectorPipe::ServiceSelectorPipe(const std::string& path)
    : m_path(path), m_pipe(::open(m_path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW)) {
    if (!m_pipe) failWithSystemError();
    if (!isPipe(m_pipe.number())) fail(e_pl_status_io_error, "it isn't a pipe; remove it");
}

std::string ServiceSelectorPipe::message(const std::string& name, const std::string& value) {
    checkToken("name", name);
    checkToken("value", value);
    std::string bytes = joined(name, '\n', value, '\n');
    if (bytes.size() <= kMessageBytes) return bytes;
    throw DeviceError(e_pl_status_invalid_argument,
                      joined("name and value have ", bytes.size() - 2, " bytes; allowed: at most ",
                             kMessageBytes - 2));
}

bool ServiceSelectorPipe::isEmpty() const {
    int waiting = 0;
    if (::ioctl(m_pipe.number(), FIONREAD, &waiting) != 0) failWithSystemError();
    return waiting == 0;
}

void ServiceSelectorPipe::write(const std::string& bytes) const {
    ssize_t written = -1;
    do {
        written = ::write(m_pipe.number(), bytes.data(), bytes.size());
    } while (written < 0 && errno == EINTR);
    if (written < 0) failWithSystemError();
}

void ServiceSelectorPipe::fail(e_pl_status status, const std::string& reason) const {
    throw DeviceError(status, joined("the pipe ", m_path, ": ", reason));
}

void ServiceSelectorPipe::failWithSystemError() const {
    // No such file, or no reader: the pipe may yet come.
    if (errno == ENXIO || errno == ENOENT) {
        fail(e_pl_status_unavailable, "no application listens; one does after initProperties()");
    }
    fail(e_pl_status_io_error, std::generic_category().message(errno));
}

}  // namespace quiravent::desktop
