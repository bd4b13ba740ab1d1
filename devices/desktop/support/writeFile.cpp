#include "support/writeFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

[[noreturn]] void failWithSystemError() {
    throw DeviceError(e_pl_status_io_error, std::generic_category().message(errno));
}

/// A new file, in place of what stands there: what another user has put into a shared folder, a
/// link for one, is never written through.
int makeNew(const std::string& path) {
    if (::unlink(path.c_str()) != 0 && errno != ENOENT) failWithSystemError();
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file < 0) failWithSystemError();
    return file;
}

/// A file that is gone at the end of the scope unless it was given its name.
class TemporaryFile {
  public:
    explicit TemporaryFile(std::string path) : m_path(std::move(path)), m_file(makeNew(m_path)) {}
    ~TemporaryFile() {
        if (m_file >= 0) ::close(m_file);
        if (!m_named) ::unlink(m_path.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void write(const std::vector<uint8_t>& bytes) const {
        size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t count = ::write(m_file, bytes.data() + done, bytes.size() - done);
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) failWithSystemError();
            done += static_cast<size_t>(count);
        }
    }

    void nameIt(const std::string& path) {
        // Some file systems tell of a full disk only here.
        const int closed = ::close(m_file);
        m_file = -1;
        if (closed != 0 || std::rename(m_path.c_str(), path.c_str()) != 0) failWithSystemError();
        m_named = true;
    }

  private:
    std::string m_path;
    int m_file;
    bool m_named = false;
};

}  // namespace

void writeFile(const std::string& path, const std::vector<uint8_t>& bytes) {
    TemporaryFile file(joined(path, '.', ::getpid(), ".part"));
    file.write(bytes);
    file.nameIt(path);
}

}  // namespace quiravent::desktop
