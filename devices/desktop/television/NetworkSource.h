#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "support/FileDescriptor.h"
#include "television/PacketSync.h"
#include "television/TransportSource.h"

namespace quiravent::desktop {

/// Where datagrams are awaited. Addresses are numbers.
struct NetworkRequest {
    std::string address;  ///< of the group, or of this machine; empty: any of IPv4
    uint16_t port = 0;
    std::string interface;  ///< name, for a group; empty: as the system chooses
    std::string sender;     ///< the only one who is heard, for a group; empty: anyone
};

/// A transport stream in datagrams, of IPv4 or IPv6, sent to this machine or to a group; with or
/// without the header of RTP (RFC 2250), which each datagram tells by itself.
class NetworkSource : public TransportSource {
  public:
    explicit NetworkSource(NetworkRequest request);

    void open() override;
    Awaited awaited() const override;
    void read(PacketSink& sink, int64_t now) override;
    uint64_t syncLosses() const override { return m_sync.losses(); }

    /// The port that is listened on.
    uint16_t port() const;

  private:
    static constexpr size_t kDatagrams = 16;
    static constexpr size_t kDatagramBytes = 1U << 16;

    void bind() const;
    void joinGroup() const;
    size_t receive();
    [[noreturn]] void fail(const std::string& what) const;

    const NetworkRequest m_request;
    FileDescriptor m_socket;
    PacketSync m_sync;
    std::vector<std::array<uint8_t, kDatagramBytes>> m_datagrams;
    std::array<size_t, kDatagrams> m_sizes{};
};

/// What a datagram carries, without a header of RTP.
ByteView datagramPayload(ByteView datagram);

/// Whether the text is an address in numbers, of IPv4 or IPv6.
bool isNumericAddress(const std::string& text);

}  // namespace quiravent::desktop
