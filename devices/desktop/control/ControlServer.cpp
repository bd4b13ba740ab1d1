#include "control/ControlServer.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

#include "support/Clock.h"
#include "support/Log.h"
#include "support/NamedThread.h"

namespace quiravent::desktop {

namespace {

/// As poll() takes it: milliseconds, rounded up; below 0: for good.
int timeLimit(int64_t until, int64_t now) {
    constexpr int64_t kMost = 60000;
    if (until == INT64_MAX) return -1;
    return static_cast<int>(std::clamp((until - now + 999) / 1000, int64_t{0}, kMost));
}

/// Whether the next client may be accepted when this one couldn't.
bool isClientsFault(int error) { return error == EPERM || error == ECONNABORTED || error == EINTR; }

}  // namespace

ControlServer::ControlServer(const std::string& path, ControlTarget target)
    : m_target(std::move(target)), m_socket(std::make_unique<ControlSocket>(path)) {
    m_thread = startThread("control", [this] { run(); });
}

std::function<void()> ControlServer::waker() const {
    return [wake = m_wake] { wake->wake(); };
}

void ControlServer::stop() {
    const std::lock_guard<std::mutex> lock(m_stopping);
    m_stopped = true;
    m_wake->wake();
    if (m_thread.joinable()) m_thread.join();
    // The socket first: a client that is told of the end by its connection may come again at once,
    // and must not meet a server that is leaving.
    m_socket.reset();
    m_connections.clear();
}

void ControlServer::run() {
    while (!m_stopped) serveOnce();
}

void ControlServer::serveOnce() {
    std::vector<pollfd> sources = awaited(clock::now());
    // Failures leave the events empty, and what can go on does.
    (void)::poll(sources.data(), sources.size(), timeLimit(nextTime(), clock::now()));
    m_wake->clear();
    const int64_t now = clock::now();
    auto source = sources.begin() + 2;
    for (Connection& connection : m_connections) connection.serve((source++)->revents, now);
    m_connections.remove_if([](const Connection& connection) { return connection.isOver(); });
    acceptAll(now);
}

/// What wakes the server, the socket, and the connections in their order.
std::vector<pollfd> ControlServer::awaited(int64_t now) const {
    const bool accepts = m_connections.size() < kMaxConnections && now >= m_acceptAgain;
    std::vector<pollfd> sources{{m_wake->descriptor(), POLLIN, 0},
                                {accepts ? m_socket->number() : -1, POLLIN, 0}};
    for (const Connection& connection : m_connections) sources.push_back(connection.awaited());
    return sources;
}

int64_t ControlServer::nextTime() const {
    int64_t time = m_acceptAgain == 0 ? INT64_MAX : m_acceptAgain;
    for (const Connection& connection : m_connections) time = std::min(time, connection.again());
    return time;
}

void ControlServer::acceptAll(int64_t now) {
    constexpr int64_t kPause = 1000000;
    if (now < m_acceptAgain) return;
    m_acceptAgain = 0;
    while (m_connections.size() < kMaxConnections) {
        FileDescriptor client = m_socket->accept();
        if (client) {
            m_connections.emplace_back(std::move(client), m_target, m_wake);
        } else if (errno == EAGAIN) {
            return;
        } else if (!isClientsFault(errno)) {
            // The client stays in the queue, and would be told of again and again.
            log::warning("a client of the control channel has to wait: ",
                         std::generic_category().message(errno));
            m_acceptAgain = now + kPause;
            return;
        }
    }
}

}  // namespace quiravent::desktop
