#include "control/Connection.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <exception>
#include <utility>

#include "control/commands.h"
#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

constexpr size_t kReadBytes = 16U << 10;
constexpr size_t kMaxOutput = 256U << 10;

}  // namespace

Connection::Connection(FileDescriptor socket, const ControlTarget& target,
                       std::shared_ptr<const WakeSignal> wakeServer)
    : m_socket(std::move(socket)), m_session{target, std::move(wakeServer), {}, false} {}

Connection::~Connection() {
    for (const int32_t code : m_session.keysDown) m_session.target.remote.keyUp(code);
}

pollfd Connection::awaited() const {
    int events = 0;
    if (!m_line && !m_lines.hasEnded() && m_output.size() < kMaxOutput) events |= POLLIN;
    if (!m_output.empty()) events |= POLLOUT;
    // A client that is gone would be told again and again while its request is under way.
    const bool isIgnored = m_hungUp && events == 0;
    return {isIgnored ? -1 : m_socket.number(), static_cast<short>(events), 0};
}

void Connection::serve(short events, int64_t now) {
    if ((events & (POLLHUP | POLLERR)) != 0) m_hungUp = true;
    do {
        receive();
    } while (answerNext(now));
    send();
}

bool Connection::isOver() const { return m_lines.hasEnded() && !m_line && m_output.empty(); }

void Connection::receive() {
    if (m_line || m_lines.hasEnded() || !m_lines.hasRoom()) return;
    std::array<char, kReadBytes> bytes = {};
    const ssize_t count = ::recv(m_socket.number(), bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (count > 0) {
        m_lines.append({bytes.data(), static_cast<size_t>(count)});
    } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
        m_lines.end();
    }
}

/// \return whether a request has been answered, so that the next one's turn has come
bool Connection::answerNext(int64_t now) {
    if (m_output.size() >= kMaxOutput) return false;
    if (!m_line) m_line = m_lines.take();
    if (!m_line) return false;
    try {
        const Progress progress = advance(now);
        m_again = progress.again;
        if (!progress.result) return false;
        OrderedJson members{{"ok", true}};
        members.update(*progress.result);
        answer(members);
    } catch (const std::exception& error) {
        answer({{"ok", false}, {"error", error.what()}});
    }
    return true;
}

Progress Connection::advance(int64_t now) {
    if (!m_work) start(*m_line);
    return m_work(now);
}

void Connection::start(const LineBuffer::Line& line) {
    if (line.isTooLong) {
        throw DeviceError(
            e_pl_status_invalid_argument,
            joined("the line is too long; allowed: ", LineBuffer::kMaxLine, " bytes"));
    }
    const Request request(Request::parse(line.text));
    m_id = request.id();
    m_work = startCommand(request, m_session);
}

void Connection::answer(const OrderedJson& members) {
    OrderedJson whole = OrderedJson::object();
    if (m_id) whole["id"] = *std::exchange(m_id, std::nullopt);
    whole.update(members);
    m_output += whole.dump(-1, ' ', false, OrderedJson::error_handler_t::replace) + '\n';
    m_line.reset();
    m_work = nullptr;
    m_again = INT64_MAX;
}

void Connection::send() {
    while (!m_output.empty()) {
        const ssize_t count = ::send(m_socket.number(), m_output.data(), m_output.size(),
                                     MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0 && errno == EAGAIN) return;
        if (count < 0 && errno == EINTR) continue;
        // A client that takes no answers has left.
        m_output.erase(0, count < 0 ? m_output.size() : static_cast<size_t>(count));
    }
    if (std::exchange(m_session.endsProcess, false)) m_session.target.endProcess();
}

}  // namespace quiravent::desktop
