#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

/// A socket that listens on a free port of the loopback interface.
class LoopbackListener {
  public:
    LoopbackListener() : m_socket(::socket(AF_INET, SOCK_STREAM, 0)) {
        constexpr int kBacklog = 64;
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        if (::bind(m_socket, generic, size) != 0 || ::listen(m_socket, kBacklog) != 0 ||
            ::getsockname(m_socket, generic, &size) != 0)
            throw std::runtime_error("no port to serve on");
        m_port = ntohs(address.sin_port);
    }
    ~LoopbackListener() { ::close(m_socket); }
    LoopbackListener(const LoopbackListener&) = delete;
    LoopbackListener& operator=(const LoopbackListener&) = delete;

    unsigned port() const { return m_port; }
    /// A connection, which the caller closes; negative once nobody is waited for any more.
    int accept() const { return ::accept(m_socket, nullptr, nullptr); }
    /// Ends the wait for connections. Any thread.
    void stop() const { ::shutdown(m_socket, SHUT_RDWR); }

  private:
    int m_socket;
    unsigned m_port = 0;
};
