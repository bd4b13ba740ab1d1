#include "HttpServer.h"

#include <sys/socket.h>
#include <unistd.h>

namespace quiravent::test {

bool HttpExchange::send(const std::string& bytes) const {
    size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count =
            ::send(m_socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) return false;
        sent += static_cast<size_t>(count);
    }
    return true;
}

void HttpExchange::waitUntilClientLeaves() const {
    char ignored = 0;
    while (::recv(m_socket, &ignored, 1, 0) > 0) {
    }
}

HttpServer::HttpServer(Handler handler)
    : m_handler(std::move(handler)), m_thread([this] { serve(); }) {}

HttpServer::~HttpServer() {
    m_listener.stop();
    m_thread.join();
}

std::string HttpServer::url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(m_listener.port()) + path;
}

void HttpServer::serve() {
    for (int client = m_listener.accept(); client >= 0; client = m_listener.accept()) {
        std::string request;
        char byte = 0;
        while (request.find("\r\n\r\n") == std::string::npos && ::recv(client, &byte, 1, 0) == 1)
            request += byte;
        m_handler(HttpExchange(client, request));
        ::close(client);
    }
}

}  // namespace quiravent::test
