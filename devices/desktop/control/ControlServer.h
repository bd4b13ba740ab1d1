#pragma once

#include <atomic>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "control/Connection.h"
#include "control/ControlSocket.h"
#include "control/ControlTarget.h"
#include "support/WakeSignal.h"

namespace quiravent::desktop {

/// The control channel: a thread that serves clients on a socket, see docs/control-channel.md.
class ControlServer {
  public:
    /// Throws DeviceError when there can't be a socket at the path. What the target refers to has
    /// to outlive the server.
    ControlServer(const std::string& path, ControlTarget target);
    ~ControlServer() { stop(); }
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;

    /// Has requests that wait look again, which they have to after each frame. The function may be
    /// called from any thread, and when the server is gone as well.
    std::function<void()> waker() const;

    /// Closes all connections, whatever is under way, and removes the socket. May be called again.
    void stop();

  private:
    static constexpr size_t kMaxConnections = 32;

    void run();
    void serveOnce();
    std::vector<pollfd> awaited(int64_t now) const;
    int64_t nextTime() const;
    void acceptAll(int64_t now);

    const ControlTarget m_target;
    std::unique_ptr<ControlSocket> m_socket;
    const std::shared_ptr<const WakeSignal> m_wake = std::make_shared<WakeSignal>();
    std::list<Connection> m_connections;
    int64_t m_acceptAgain = 0;  ///< clients are left waiting until then

    std::atomic<bool> m_stopped{false};
    std::mutex m_stopping;
    std::thread m_thread;
};

}  // namespace quiravent::desktop
