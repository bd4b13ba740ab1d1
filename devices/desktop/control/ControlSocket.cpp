#include "control/ControlSocket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>
#include <system_error>
#include <utility>

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

constexpr mode_t kMode = 0600;
constexpr int kBacklog = 16;
constexpr size_t kMaxPath = sizeof(sockaddr_un::sun_path) - 1;

FileDescriptor newSocket(int flags) {
    return FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | flags, 0));
}

/// Calls bind() or connect() with the path as the address.
template <class Call>
int withAddress(Call call, int socket, const std::string& path) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size());
    return call(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

bool isOfSameUser(int socket) {
    ucred client = {};
    socklen_t size = sizeof client;
    if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &client, &size) != 0) return false;
    return client.uid == ::geteuid();
}

void turnAway(int socket) {
    constexpr std::string_view kAnswer =
        "{\"ok\":false,\"error\":\"the device belongs to another user\"}\n";
    (void)::send(socket, kAnswer.data(), kAnswer.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

}  // namespace

ControlSocket::ControlSocket(std::string path)
    : m_path(std::move(path)), m_socket(newSocket(SOCK_NONBLOCK)) {
    if (m_path.size() > kMaxPath) {
        throw DeviceError(e_pl_status_invalid_argument,
                          joined("the control channel can't be at ", m_path, ": its path has ",
                                 m_path.size(), " bytes; allowed: at most ", kMaxPath));
    }
    if (!m_socket) fail("no socket");
    bind();
    if (::listen(m_socket.number(), kBacklog) != 0) fail("nothing can be awaited there");
}

ControlSocket::~ControlSocket() {
    struct stat about = {};
    if (::lstat(m_path.c_str(), &about) != 0) return;
    if (about.st_dev == m_device && about.st_ino == m_file) ::unlink(m_path.c_str());
}

FileDescriptor ControlSocket::accept() const {
    FileDescriptor client(::accept4(m_socket.number(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!client || isOfSameUser(client.number())) return client;
    turnAway(client.number());
    client = FileDescriptor();
    errno = EPERM;
    return client;
}

void ControlSocket::bind() {
    // The file gets the mode of the socket, less the mask of the process: nobody else can connect
    // even before the mode is set for good.
    ::fchmod(m_socket.number(), kMode);
    int failure = withAddress(::bind, m_socket.number(), m_path);
    if (failure != 0 && errno == EADDRINUSE) {
        removeStale();
        failure = withAddress(::bind, m_socket.number(), m_path);
    }
    if (failure != 0) fail("it can't be made");
    struct stat about = {};
    if (::chmod(m_path.c_str(), kMode) != 0 || ::lstat(m_path.c_str(), &about) != 0) {
        fail("it has gone again");
    }
    m_device = about.st_dev;
    m_file = about.st_ino;
}

void ControlSocket::removeStale() const {
    struct stat about = {};
    if (::lstat(m_path.c_str(), &about) == 0 && !S_ISSOCK(about.st_mode)) {
        throw DeviceError(e_pl_status_invalid_argument,
                          joined("the control channel can't be at ", m_path,
                                 ": that is no socket; remove it, or choose another path"));
    }
    const FileDescriptor client = newSocket(SOCK_NONBLOCK);
    if (withAddress(::connect, client.number(), m_path) == 0 || errno != ECONNREFUSED) {
        throw DeviceError(e_pl_status_wrong_state,
                          joined("the control channel can't be at ", m_path,
                                 ": another process listens there; choose another path"));
    }
    ::unlink(m_path.c_str());
}

void ControlSocket::fail(const std::string& what) const {
    throw DeviceError(e_pl_status_io_error,
                      joined("the control channel can't be at ", m_path, ": ", what, ": ",
                             std::generic_category().message(errno)));
}

}  // namespace quiravent::desktop
