#include "media/MediaServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "media/TestPlayer.h"

namespace quiravent::test {

namespace {

std::string readRequest(int client) {
    std::string request;
    char byte = 0;
    while (request.find("\r\n\r\n") == std::string::npos && ::recv(client, &byte, 1, 0) == 1)
        request += byte;
    return request;
}

size_t rangeBegin(const std::string& request) {
    const std::string field = "Range: bytes=";
    const size_t at = request.find(field);
    return at == std::string::npos ? 0 : std::strtoull(&request[at + field.size()], nullptr, 10);
}

}  // namespace

MediaServer::MediaServer(Misbehaviour misbehaviour)
    : m_misbehaviour(std::move(misbehaviour)), m_listener(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(m_listener, generic, size) != 0 || ::listen(m_listener, 64) != 0 ||
        ::getsockname(m_listener, generic, &size) != 0)
        throw std::runtime_error("no port to serve on");
    m_port = ntohs(address.sin_port);
    m_acceptor = std::thread([this] { accept(); });
}

MediaServer::~MediaServer() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_closed = true;
        for (const int client : m_clients) ::shutdown(client, SHUT_RDWR);
        m_changed.notify_all();
    }
    ::shutdown(m_listener, SHUT_RDWR);
    m_acceptor.join();
    for (std::thread& thread : m_threads) thread.join();
    for (const int client : m_clients) ::close(client);
    ::close(m_listener);
}

std::string MediaServer::url(const std::string& name) const {
    return "http://127.0.0.1:" + std::to_string(m_port) + "/" + name;
}

void MediaServer::behave() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_misbehaviour = {};
    m_changed.notify_all();
}

bool MediaServer::waitUntilHolding() {
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, std::chrono::seconds(10), [this] { return m_holding; });
}

std::vector<std::string> MediaServer::requested() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_requested;
}

void MediaServer::accept() {
    for (int client = ::accept(m_listener, nullptr, nullptr); client >= 0;
         client = ::accept(m_listener, nullptr, nullptr)) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_clients.push_back(client);
        if (m_closed || m_dropped)
            ::shutdown(client, SHUT_RDWR);
        else
            m_threads.emplace_back([this, client] { serve(client); });
    }
}

bool MediaServer::send(int client, const std::string& bytes) const {
    size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count =
            ::send(client, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) return false;
        sent += static_cast<size_t>(count);
    }
    return true;
}

void MediaServer::serve(int client) {
    const std::string request = readRequest(client);
    if (request.empty()) return;
    const size_t begin = request.find('/') + 1;
    const std::string name = request.substr(begin, request.find(' ', begin) - begin);
    std::ifstream file(mediaFile(name), std::ios::binary);
    const std::string content((std::istreambuf_iterator<char>(file)), {});
    std::string status;
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_requested.push_back(name);
        m_holding |= m_misbehaviour.silent;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_closed || !m_misbehaviour.silent; });
        status = m_misbehaviour.status;
    }
    if (!file.good() && !file.eof()) status = "404 Not Found";
    if (!status.empty()) {
        send(client, "HTTP/1.1 " + status + "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
    } else {
        const size_t from = std::min(rangeBegin(request), content.size());
        send(client,
             "HTTP/1.1 206 Partial Content\r\nAccept-Ranges: bytes\r\nContent-Range: bytes " +
                 std::to_string(from) + "-" + std::to_string(content.size() - 1) + "/" +
                 std::to_string(content.size()) + "\r\nContent-Length: " +
                 std::to_string(content.size() - from) + "\r\nConnection: close\r\n\r\n");
        sendFile(client, content, from);
    }
    ::shutdown(client, SHUT_RDWR);
}

void MediaServer::sendFile(int client, const std::string& content, size_t from) {
    size_t good = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        good = std::clamp(m_misbehaviour.goodBytes, from, content.size());
    }
    if (!send(client, content.substr(from, good - from)) || good == content.size()) return;
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_holding = true;
        m_changed.notify_all();
        if (m_misbehaviour.thenDrops) {
            m_dropped = true;
            return;
        }
        m_changed.wait(lock, [&] { return m_closed || m_misbehaviour.goodBytes == SIZE_MAX; });
        if (m_closed) return;
    }
    send(client, content.substr(good));
}

}  // namespace quiravent::test
