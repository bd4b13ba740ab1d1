#include "media/MediaServer.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>

#include "media/Samples.h"
#include "media/TestPlayer.h"

namespace quiravent::test {

namespace {

size_t rangeBegin(const std::string& request) {
    const std::string field = "Range: bytes=";
    const size_t at = request.find(field);
    return at == std::string::npos ? 0 : std::strtoull(&request[at + field.size()], nullptr, 10);
}

}  // namespace

MediaServer::MediaServer(Misbehaviour misbehaviour) : m_misbehaviour(std::move(misbehaviour)) {}

MediaServer::MediaServer(const std::string& certificate)
    : m_identity(std::make_unique<ServerIdentity>(mediaFile(certificate))) {}

MediaServer::~MediaServer() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_closed = true;
    m_changed.notify_all();
}

std::string MediaServer::url(const std::string& name) const {
    return m_server.url(m_identity ? "https" : "http", name);
}

bool MediaServer::isDropping() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_closed || m_dropped;
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

bool MediaServer::waitUntilRequested(const std::string& name) {
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, std::chrono::seconds(10), [&] {
        return std::find(m_requested.begin(), m_requested.end(), name) != m_requested.end();
    });
}

void MediaServer::publish(const std::string& name, const std::string& content) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_published[name] = content;
}

std::vector<std::string> MediaServer::requested() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_requested;
}

bool MediaServer::find(const std::string& name, std::string& content) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto published = m_published.find(name);
    content = published != m_published.end() ? published->second : contentOf(mediaFile(name));
    return !content.empty();
}

void MediaServer::serve(int client) {
    ServerConnection connection(client, m_identity.get());
    const std::string request = isDropping() ? "" : connection.readRequest();
    if (request.empty()) return;
    const size_t begin = request.find('/') + 1;
    const std::string name = request.substr(begin, request.find(' ', begin) - begin);
    std::string content;
    std::string status = find(name, content) ? "" : "404 Not Found";
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_requested.push_back(name);
        m_holding |= m_misbehaviour.silent;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_closed || !m_misbehaviour.silent; });
        if (!m_misbehaviour.status.empty()) status = m_misbehaviour.status;
    }
    if (!status.empty()) {
        connection.send("HTTP/1.1 " + status +
                        "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
        return;
    }
    const size_t from = std::min(rangeBegin(request), content.size());
    connection.send(
        "HTTP/1.1 206 Partial Content\r\nAccept-Ranges: bytes\r\nContent-Range: bytes " +
        std::to_string(from) + "-" + std::to_string(content.size() - 1) + "/" +
        std::to_string(content.size()) + "\r\nContent-Length: " +
        std::to_string(content.size() - from) + "\r\nConnection: close\r\n\r\n");
    sendFile(connection, content, from);
}

void MediaServer::sendFile(ServerConnection& connection, const std::string& content, size_t from) {
    std::unique_lock<std::mutex> lock(m_mutex);
    const size_t good = std::clamp(m_misbehaviour.goodBytes, from, content.size());
    lock.unlock();
    if (!connection.send(content.substr(from, good - from)) || good == content.size()) return;
    lock.lock();
    m_holding = true;
    m_changed.notify_all();
    if (m_misbehaviour.thenDrops) {
        m_dropped = true;
        return;
    }
    m_changed.wait(lock, [&] { return m_closed || m_misbehaviour.goodBytes == SIZE_MAX; });
    if (m_closed) return;
    lock.unlock();
    connection.send(content.substr(good));
}

}  // namespace quiravent::test
