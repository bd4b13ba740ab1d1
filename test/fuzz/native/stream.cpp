// Transport streams, as they come from a tuner: the packets, the tables in them, and who listens.

#include <algorithm>
#include <memory>

#include "Input.h"
#include "television/ContinuityCheck.h"
#include "television/KeyPicture.h"
#include "television/Multiplex.h"
#include "television/PacketSync.h"
#include "television/ServiceTables.h"
#include "television/TestStream.h"

namespace quiravent::fuzz {
namespace {

using namespace quiravent::desktop;

/// Reads all of what it hears.
struct Listener : StreamListener {
    void onTuned() override {}
    void onUntuned() override {}
    void onPacket(const StreamPacket& packet) override {
        for (size_t at = 0; at < packet.packet.payloadSize(); ++at)
            sum += packet.packet.payload()[at];
    }
    void onTablesChanged() override {}
    void onSignal(bool) override {}

    uint64_t sum = 0;
};

/// A receiver that takes bytes as a tuner does.
class Receiver {
  public:
    void take(const std::vector<uint8_t>& bytes) {
        Listener listener;
        Subscription subscription = m_multiplex.subscribe(listener, {{kPatPid, 256, 257}, 256});
        m_selection = m_multiplex.begin();
        m_multiplex.setSignal(m_selection, true);
        PacketSync sync;
        sync.add({bytes.data(), bytes.size()},
                 [&](const TransportPacket& packet, uint64_t) { takePacket(packet); });
        // Somebody who comes later gets what is kept.
        subscription = m_multiplex.subscribe(listener, {{256}, 256});
        m_multiplex.end();
    }

  private:
    void takePacket(const TransportPacket& packet) {
        const bool isDiscontinuous =
            m_continuity.check(packet) != ContinuityCheck::Verdict::regular;
        if (m_tables.add(packet, isDiscontinuous) != ServiceTables::Change::none) {
            m_multiplex.publish(m_selection,
                                std::make_shared<MultiplexDescription>(m_tables.describe()), true);
        }
        for (int codec = 0; codec < 8; ++codec) {
            (void)startsKeyPicture(packet, static_cast<StreamCodec>(codec));
        }
        (void)packet.clockReference();
        m_multiplex.receive(m_selection, {{packet, m_time++, isDiscontinuous, false}});
    }

    Multiplex m_multiplex{size_t{64} << 10};
    ContinuityCheck m_continuity;
    ServiceTables m_tables;
    uint64_t m_selection = 0;
    int64_t m_time = 0;
};

/// The bytes as the content of sections, in packets with all checksums right: for each a byte that
/// says which table, one for its length, and the content.
std::vector<uint8_t> asTables(const std::vector<uint8_t>& bytes) {
    struct Table {
        Pid pid;
        uint8_t id;
    };
    constexpr Table kTables[] = {{kPatPid, 0x00}, {0x100, 0x02},   {kNitPid, 0x40},
                                 {kSdtPid, 0x42}, {kEitPid, 0x4E}, {kPatPid, 0x00}};
    test::Packetizer packetizer;
    std::vector<uint8_t> stream;
    for (size_t at = 0; at + 2 <= bytes.size();) {
        const Table& table = kTables[bytes[at] % std::size(kTables)];
        const auto version = static_cast<uint8_t>(bytes[at] >> 3);
        const size_t length = std::min<size_t>(bytes[at + 1], bytes.size() - at - 2);
        const auto begin = bytes.begin() + static_cast<ptrdiff_t>(at + 2);
        const test::Bytes body(begin, begin + static_cast<ptrdiff_t>(length));
        const test::Bytes section = test::section({table.id, 1, version}, body);
        const test::Bytes packets = packetizer.packets(table.pid, section);
        stream.insert(stream.end(), packets.begin(), packets.end());
        at += 2 + length;
    }
    return stream;
}

}  // namespace
}  // namespace quiravent::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace quiravent::fuzz;
    const std::vector<uint8_t> bytes(data, data + size);
    auto receiver = std::make_unique<Receiver>();
    receiver->take(bytes);
    receiver = std::make_unique<Receiver>();
    receiver->take(asTables(bytes));
    return 0;
}
