#include "HttpServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

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
    : m_handler(std::move(handler)), m_listener(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(m_listener, generic, size) != 0 || ::listen(m_listener, 8) != 0 ||
        ::getsockname(m_listener, generic, &size) != 0)
        throw std::runtime_error("no port to serve on");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { serve(); });
}

HttpServer::~HttpServer() {
    ::shutdown(m_listener, SHUT_RDWR);
    m_thread.join();
    ::close(m_listener);
}

std::string HttpServer::url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(m_port) + path;
}

void HttpServer::serve() {
    for (int client = ::accept(m_listener, nullptr, nullptr); client >= 0;
         client = ::accept(m_listener, nullptr, nullptr)) {
        std::string request;
        char byte = 0;
        while (request.find("\r\n\r\n") == std::string::npos && ::recv(client, &byte, 1, 0) == 1)
            request += byte;
        m_handler(HttpExchange(client, request));
        ::close(client);
    }
}

}  // namespace quiravent::test
