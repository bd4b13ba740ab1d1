#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "television/TransportPacket.h"
#include "television/TransportSource.h"

namespace quiravent::test {

using Bytes = std::vector<uint8_t>;

/// The content of a stream that make-multiplexes.sh made.
std::string multiplexFile(const std::string& name);
Bytes readMultiplex(const std::string& name);
void writeBytes(const std::string& file, const Bytes& bytes);

/// The bytes of a text and others, one after the other.
Bytes bytesOf(const std::string& text);
Bytes operator+(const Bytes& one, const Bytes& other);

/// A descriptor; content of at most 255 bytes.
Bytes descriptor(uint8_t tag, const Bytes& content);
/// Sixteen bits, the higher byte first.
Bytes word(unsigned value);
/// Bytes behind their number: in one byte, and in twelve bits.
Bytes counted(const Bytes& bytes);
Bytes countedLong(const Bytes& bytes);

struct SectionFields {
    uint8_t tableId = 0;
    uint16_t extension = 0;
    uint8_t version = 0;
    uint8_t number = 0;
    uint8_t lastNumber = 0;
};
/// A whole section with its checksum.
Bytes section(const SectionFields& fields, const Bytes& body);

/// Keeps all that a source gives.
class Taker : public desktop::PacketSink {
  public:
    void onPacket(const desktop::TransportPacket& packet, int64_t arrival) override;
    void onRestart() override { restarts.push_back(arrivals.size()); }

    Bytes stream;
    std::vector<int64_t> arrivals;
    std::vector<size_t> restarts;  ///< numbers of the packets before which there was one
};

/// Makes packets; their counters go on from call to call.
class Packetizer {
  public:
    /// The packets that carry a section.
    Bytes packets(desktop::Pid pid, const Bytes& section);

  private:
    std::map<desktop::Pid, uint8_t> m_counters;
};

/// A packet that has a clock reference of so many ticks, unless that is 0.
Bytes clockPacket(desktop::Pid pid, int64_t clock);
/// A packet of a video stream in H.264, with which a picture begins, or a key picture.
Bytes videoPacket(desktop::Pid pid, bool begins, bool isKey);

}  // namespace quiravent::test
