#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace quiravent::test {

/// Listens on a free port of the loopback interface, and serves each connection on a thread of its
/// own.
class ConnectionServer {
  public:
    /// serve: is given each connection's socket, which is closed for reading and writing when it
    /// returns, and before the server's end.
    explicit ConnectionServer(std::function<void(int socket)> serve)
        : m_serve(std::move(serve)), m_listener(::socket(AF_INET, SOCK_STREAM, 0)) {
        constexpr int kBacklog = 64;
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        if (::bind(m_listener, generic, size) != 0 || ::listen(m_listener, kBacklog) != 0 ||
            ::getsockname(m_listener, generic, &size) != 0)
            throw std::runtime_error("no port to serve on");
        m_port = ntohs(address.sin_port);
        m_acceptor = std::thread([this] { accept(); });
    }
    ~ConnectionServer() {
        ::shutdown(m_listener, SHUT_RDWR);
        m_acceptor.join();
        for (const int socket : m_sockets) ::shutdown(socket, SHUT_RDWR);
        for (std::thread& thread : m_threads) thread.join();
        for (const int socket : m_sockets) ::close(socket);
        ::close(m_listener);
    }
    ConnectionServer(const ConnectionServer&) = delete;
    ConnectionServer& operator=(const ConnectionServer&) = delete;

    /// The place of a file, for a scheme of "http" or "https".
    std::string url(const std::string& scheme, const std::string& name) const {
        return scheme + "://127.0.0.1:" + std::to_string(m_port) + "/" + name;
    }

  private:
    void accept() {
        int socket = -1;
        while ((socket = ::accept(m_listener, nullptr, nullptr)) >= 0) {
            m_sockets.push_back(socket);
            m_threads.emplace_back([this, socket] {
                m_serve(socket);
                ::shutdown(socket, SHUT_RDWR);
            });
        }
    }

    const std::function<void(int)> m_serve;
    const int m_listener;
    unsigned m_port = 0;
    std::vector<int> m_sockets;  ///< of the acceptor, and of the end once that is over
    std::vector<std::thread> m_threads;
    std::thread m_acceptor;
};

}  // namespace quiravent::test
