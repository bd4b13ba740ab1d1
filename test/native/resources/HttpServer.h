#pragma once

#include <functional>
#include <string>
#include <thread>

#include "common/LoopbackListener.h"

namespace quiravent::test {

/// One connection of a client that has sent its request.
class HttpExchange {
  public:
    HttpExchange(int socket, std::string request)
        : m_socket(socket), m_request(std::move(request)) {}

    const std::string& request() const { return m_request; }

    /// False when the client has gone.
    bool send(const std::string& bytes) const;
    void waitUntilClientLeaves() const;

  private:
    int m_socket;
    std::string m_request;
};

/// Serves one connection after another on a free port of the loopback interface.
class HttpServer {
  public:
    using Handler = std::function<void(const HttpExchange&)>;

    explicit HttpServer(Handler handler);
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    std::string url(const std::string& path) const;

  private:
    void serve();

    Handler m_handler;
    LoopbackListener m_listener;
    std::thread m_thread;
};

}  // namespace quiravent::test
