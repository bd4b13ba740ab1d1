#include "LocalFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "resources/LimitText.h"
#include "support/FileDescriptor.h"

namespace quiravent::desktop {

namespace {

Failure systemFailure(int error) {
    if (error == ENOENT) return {"no such file"};
    return {std::generic_category().message(error)};
}

/// Size of the regular file behind the descriptor.
Result<size_t> regularFileSize(const FileDescriptor& file) {
    struct stat status {};
    if (::fstat(file.number(), &status) != 0) return systemFailure(errno);
    if (S_ISDIR(status.st_mode)) return Failure{"it is a directory"};
    if (!S_ISREG(status.st_mode)) return Failure{"it is not a regular file"};
    return static_cast<size_t>(status.st_size);
}

/// Appends what one read gives, at most `wanted` bytes; false at the end of the file.
Result<bool> readMore(const FileDescriptor& file, size_t wanted, Bytes& bytes) {
    const size_t before = bytes.size();
    bytes.resize(before + wanted);
    ssize_t count = -1;
    do {
        count = ::read(file.number(), bytes.data() + before, wanted);
    } while (count < 0 && errno == EINTR);
    if (count < 0) return systemFailure(errno);
    bytes.resize(before + static_cast<size_t>(count));
    return count > 0;
}

}  // namespace

Result<Bytes> readLocalFile(const std::string& path, size_t maxBytes) {
    // Opened without blocking, since the path may name a pipe that nobody writes to.
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file) return systemFailure(errno);
    const Result<size_t> size = regularFileSize(file);
    if (!size) return Failure{size.reason()};
    if (*size > maxBytes) return largerThan(maxBytes);

    // The file may be changing: its size is a hint, and one byte more is asked for to see the end.
    constexpr size_t kLeastRead = 4096;
    Bytes bytes;
    bytes.reserve(*size + 1);
    while (bytes.size() <= maxBytes) {
        const size_t expected = *size + 1 > bytes.size() ? *size + 1 - bytes.size() : kLeastRead;
        const Result<bool> more = readMore(file, expected, bytes);
        if (!more) return Failure{more.reason()};
        if (!*more) return bytes;
    }
    return largerThan(maxBytes);
}

}  // namespace quiravent::desktop
