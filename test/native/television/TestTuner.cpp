#include "television/TestTuner.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>

#include "common/Watched.h"

namespace quiravent::test {

namespace {

constexpr std::chrono::seconds kPatience{15};

struct Reports {
    std::vector<int> codes;
    std::function<void(int)> use;
};
Watched<Reports>& all() {
    static Watched<Reports> reports;
    return reports;
}

void onReport(e_pl_dtv_error code) {
    all().change([=](Reports& reports) { reports.codes.push_back(static_cast<int>(code)); });
    if (const auto use = all().get().use) use(static_cast<int>(code));
}

sockaddr_in addressOf(const std::string& address, uint16_t port) {
    sockaddr_in result = {};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    ::inet_pton(AF_INET, address.c_str(), &result.sin_addr);
    return result;
}

}  // namespace

TestTuner::TestTuner(const desktop::Configuration::Television& configuration)
    : m_tuner(configuration) {
    all().change([](Reports& reports) { reports = {}; });
}

void TestTuner::select(const std::string& selector, const std::string& option) {
    m_tuner.select(selector, option, test::onReport);
}

std::vector<int> TestTuner::waitForReports(size_t count) {
    all().waitUntil([=](const Reports& reports) { return reports.codes.size() >= count; },
                    kPatience);
    return reports();
}

std::vector<int> TestTuner::reports() const { return all().get().codes; }

void TestTuner::onReport(std::function<void(int)> use) {
    all().change([&](Reports& reports) { reports.use = std::move(use); });
}

bool waitUntil(const std::function<bool()>& isSo) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!isSo()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

Sender::Sender(const std::string& address, uint16_t port)
    : m_socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    const in_addr own{htonl(INADDR_LOOPBACK)};
    ::setsockopt(m_socket.number(), IPPROTO_IP, IP_MULTICAST_IF, &own, sizeof own);
    const sockaddr_in target = addressOf(address, port);
    if (::connect(m_socket.number(), reinterpret_cast<const sockaddr*>(&target), sizeof target) !=
        0)
        throw std::system_error(errno, std::generic_category(), address);
}

void Sender::sendStream(const Bytes& packets, const Bytes& header) const {
    constexpr size_t kPayload = 7 * desktop::TransportPacket::kSize;
    for (size_t at = 0; at < packets.size(); at += kPayload) {
        const size_t size = std::min(kPayload, packets.size() - at);
        const Bytes datagram = header + Bytes(packets.data() + at, packets.data() + at + size);
        ::send(m_socket.number(), datagram.data(), datagram.size(), 0);
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
}

uint16_t freePort() {
    const desktop::FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    sockaddr_in address = addressOf("127.0.0.1", 0);
    socklen_t size = sizeof address;
    auto* const general = reinterpret_cast<sockaddr*>(&address);
    if (::bind(socket.number(), general, size) != 0 ||
        ::getsockname(socket.number(), general, &size) != 0)
        throw std::system_error(errno, std::generic_category(), "no free port");
    return ntohs(address.sin_port);
}

}  // namespace quiravent::test
