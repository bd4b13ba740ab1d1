#include "television/NetworkSource.h"

#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

#include "support/Text.h"
#include "television/TunerError.h"

namespace quiravent::desktop {

namespace {

/// Enough for half a second of the richest multiplex, if the system grants it.
constexpr int kReceiveBytes = 4 << 20;

/// A transport stream's datagrams of one read, so that other work has its turn.
constexpr int kMostReads = 8;

struct Address {
    sockaddr_storage storage;
    socklen_t size;

    const sockaddr* general() const { return reinterpret_cast<const sockaddr*>(&storage); }
    bool isIpv6() const { return storage.ss_family == AF_INET6; }
    int level() const { return isIpv6() ? IPPROTO_IPV6 : IPPROTO_IP; }

    bool isGroup() const {
        if (isIpv6()) {
            const auto* const all = reinterpret_cast<const sockaddr_in6*>(&storage);
            return IN6_IS_ADDR_MULTICAST(&all->sin6_addr);
        }
        const auto* const all = reinterpret_cast<const sockaddr_in*>(&storage);
        return IN_MULTICAST(ntohl(all->sin_addr.s_addr));
    }
};

std::optional<Address> numericAddress(const std::string& text, uint16_t port) {
    addrinfo hints = {};
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
    hints.ai_family = text.empty() ? AF_INET : AF_UNSPEC;
    hints.ai_socktype = SOCK_DGRAM;
    addrinfo* found = nullptr;
    const char* const name = text.empty() ? nullptr : text.c_str();
    if (::getaddrinfo(name, joined(port).c_str(), &hints, &found) != 0) return std::nullopt;
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(found, ::freeaddrinfo);
    Address address{};
    std::memcpy(&address.storage, found->ai_addr, found->ai_addrlen);
    address.size = found->ai_addrlen;
    return address;
}

Address checkedAddress(const std::string& text, uint16_t port) {
    if (const auto address = numericAddress(text, port)) return *address;
    throw TunerError(e_pl_dtv_error_invalid_parameter,
                     joined("'", text, "' is no address; allowed: one in numbers"));
}

/// 0 for none.
unsigned interfaceNumber(const std::string& name) {
    if (name.empty()) return 0;
    const unsigned number = ::if_nametoindex(name.c_str());
    if (number != 0) return number;
    throw TunerError(e_pl_dtv_error_invalid_parameter,
                     joined("there is no network interface '", name, "'"));
}

template <class Value>
bool setOption(int socket, int level, int option, const Value& value) {
    return ::setsockopt(socket, level, option, &value, sizeof value) == 0;
}

}  // namespace

bool isNumericAddress(const std::string& text) { return numericAddress(text, 0).has_value(); }

ByteView datagramPayload(ByteView datagram) {
    constexpr size_t kHeader = 12;
    constexpr uint8_t kVersion2 = 0x80;
    if (datagram.size() < kHeader || datagram.front() == TransportPacket::kSync) return datagram;
    const uint8_t first = datagram.front();
    if ((first & 0xC0) != kVersion2) return datagram;
    ByteReader reader(datagram);
    reader.skip(kHeader + size_t{4} * (first & 0x0FU));
    if ((first & 0x10) != 0) {
        reader.word();
        reader.skip(size_t{4} * reader.word());
    }
    ByteView payload = reader.take(reader.left());
    const bool isPadded = (first & 0x20) != 0 && !payload.empty();
    if (isPadded) payload.remove_suffix(std::min<size_t>(payload.back(), payload.size()));
    return payload;
}

NetworkSource::NetworkSource(NetworkRequest request)
    : m_request(std::move(request)), m_datagrams(kDatagrams) {}

void NetworkSource::open() {
    const Address address = checkedAddress(m_request.address, m_request.port);
    constexpr int kType = SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC;
    m_socket = FileDescriptor();
    m_socket = FileDescriptor(::socket(address.storage.ss_family, kType, 0));
    if (!m_socket) fail("there is no socket");
    m_sync.restart();
    setOption(m_socket.number(), SOL_SOCKET, SO_RCVBUF, kReceiveBytes);
    bind();
    if (address.isGroup()) joinGroup();
}

void NetworkSource::bind() const {
    const Address address = checkedAddress(m_request.address, m_request.port);
    if (address.isGroup()) {
        // Several programs of a machine may listen to a group, each to the groups it joined only.
        setOption(m_socket.number(), SOL_SOCKET, SO_REUSEADDR, int{1});
        setOption(m_socket.number(), IPPROTO_IP, IP_MULTICAST_ALL, int{0});
    }
    if (::bind(m_socket.number(), address.general(), address.size) != 0) {
        fail("its packets can't be awaited");
    }
}

void NetworkSource::joinGroup() const {
    const Address group = checkedAddress(m_request.address, m_request.port);
    const unsigned interface = interfaceNumber(m_request.interface);
    bool hasJoined = false;
    if (m_request.sender.empty()) {
        group_req request = {};
        request.gr_interface = interface;
        request.gr_group = group.storage;
        hasJoined = setOption(m_socket.number(), group.level(), MCAST_JOIN_GROUP, request);
    } else {
        group_source_req request = {};
        request.gsr_interface = interface;
        request.gsr_group = group.storage;
        request.gsr_source = checkedAddress(m_request.sender, 0).storage;
        hasJoined = setOption(m_socket.number(), group.level(), MCAST_JOIN_SOURCE_GROUP, request);
    }
    if (!hasJoined) fail("the group can't be joined");
}

TransportSource::Awaited NetworkSource::awaited() const { return {m_socket.number(), INT64_MAX}; }

void NetworkSource::read(PacketSink& sink, int64_t now) {
    for (int reads = 0; reads < kMostReads; ++reads) {
        const size_t count = receive();
        for (size_t number = 0; number < count; ++number) {
            m_sync.add(
                datagramPayload({m_datagrams[number].data(), m_sizes[number]}),
                [&](const TransportPacket& packet, uint64_t) { sink.onPacket(packet, now); });
        }
        if (count < kDatagrams) return;
    }
}

/// How many datagrams there were. That nobody may hear them is an error of theirs, not of this one.
size_t NetworkSource::receive() {
    std::array<mmsghdr, kDatagrams> messages = {};
    std::array<iovec, kDatagrams> buffers = {};
    for (size_t number = 0; number < kDatagrams; ++number) {
        buffers[number] = {m_datagrams[number].data(), m_datagrams[number].size()};
        messages[number].msg_hdr.msg_iov = &buffers[number];
        messages[number].msg_hdr.msg_iovlen = 1;
    }
    const int count =
        ::recvmmsg(m_socket.number(), messages.data(), kDatagrams, MSG_DONTWAIT, nullptr);
    for (int number = 0; number < count; ++number) m_sizes[number] = messages[number].msg_len;
    return count < 0 ? 0 : static_cast<size_t>(count);
}

uint16_t NetworkSource::port() const {
    Address address{};
    address.size = sizeof address.storage;
    ::getsockname(m_socket.number(), reinterpret_cast<sockaddr*>(&address.storage), &address.size);
    // The port stands at the same place for both kinds of address.
    return ntohs(reinterpret_cast<const sockaddr_in*>(&address.storage)->sin_port);
}

void NetworkSource::fail(const std::string& what) const {
    throw TunerError::ofSystem(
        joined("the transport stream of ", m_request.address, " port ", m_request.port, ": ", what),
        errno, e_pl_dtv_error_operation_unavailable);
}

}  // namespace quiravent::desktop
