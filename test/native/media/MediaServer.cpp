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

MediaServer::MediaServer(Misbehaviour misbehaviour) {
    m_state.change([&](State& state) { state.misbehaviour = std::move(misbehaviour); });
}

MediaServer::MediaServer(const std::string& certificate)
    : m_identity(std::make_unique<ServerIdentity>(mediaFile(certificate))) {}

MediaServer::~MediaServer() {
    m_state.change([](State& state) { state.isClosed = true; });
}

std::string MediaServer::url(const std::string& name) const {
    return m_server.url(m_identity ? "https" : "http", name);
}

void MediaServer::behave() {
    m_state.change([](State& state) { state.misbehaviour = {}; });
}

void MediaServer::publish(const std::string& name, const std::string& content) {
    m_state.change([&](State& state) { state.published[name] = content; });
}

bool MediaServer::waitUntilHolding() const {
    return m_state.waitUntil([](const State& state) { return state.isHolding; });
}

bool MediaServer::waitUntilRequested(const std::string& name) const {
    return m_state.waitUntil([&](const State& state) {
        return std::count(state.requested.begin(), state.requested.end(), name) > 0;
    });
}

void MediaServer::serve(int client) {
    constexpr std::chrono::hours kForEver{24};
    ServerConnection connection(client, m_identity.get());
    State state = m_state.get();
    if (state.isClosed || state.hasDropped) return;
    const std::string request = connection.readRequest();
    if (request.empty()) return;
    const size_t begin = request.find('/') + 1;
    const std::string name = request.substr(begin, request.find(' ', begin) - begin);
    m_state.change([&](State& now) {
        now.requested.push_back(name);
        now.isHolding |= now.misbehaviour.silent;
    });
    m_state.waitUntil([](const State& now) { return now.isClosed || !now.misbehaviour.silent; },
                      kForEver);
    state = m_state.get();
    const std::string content =
        state.published.count(name) != 0 ? state.published.at(name) : contentOf(mediaFile(name));
    const std::string status = content.empty() ? "404 Not Found" : state.misbehaviour.status;
    if (!status.empty()) {
        connection.send("HTTP/1.1 " + status +
                        "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
        return;
    }
    const size_t from = std::min(rangeBegin(request), content.size());
    const size_t good = std::clamp(state.misbehaviour.goodBytes, from, content.size());
    const std::string size = std::to_string(content.size());
    const bool isSent = connection.send(
        "HTTP/1.1 206 Partial Content\r\nAccept-Ranges: bytes\r\nContent-Range: bytes " +
        std::to_string(from) + "-" + std::to_string(content.size() - 1) + "/" + size +
        "\r\nContent-Length: " + std::to_string(content.size() - from) +
        "\r\nConnection: close\r\n\r\n" + content.substr(from, good - from));
    if (!isSent || good == content.size()) return;
    m_state.change([](State& now) {
        now.isHolding = true;
        now.hasDropped |= now.misbehaviour.thenDrops;
    });
    if (m_state.get().hasDropped) return;
    m_state.waitUntil(
        [](const State& now) { return now.isClosed || now.misbehaviour.goodBytes == SIZE_MAX; },
        kForEver);
    if (!m_state.get().isClosed) connection.send(content.substr(good));
}

}  // namespace quiravent::test
