#include "television/TestStream.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "television/Crc32.h"

namespace quiravent::test {

std::string multiplexFile(const std::string& name) { return TEST_MULTIPLEXES "/" + name; }

Bytes readMultiplex(const std::string& name) {
    std::ifstream file(multiplexFile(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeBytes(const std::string& file, const Bytes& bytes) {
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

Bytes operator+(const Bytes& one, const Bytes& other) {
    Bytes both = one;
    both.insert(both.end(), other.begin(), other.end());
    return both;
}

Bytes descriptor(uint8_t tag, const Bytes& content) { return Bytes{tag} + counted(content); }

Bytes word(unsigned value) {
    return {static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value)};
}

Bytes counted(const Bytes& bytes) { return Bytes{static_cast<uint8_t>(bytes.size())} + bytes; }

Bytes countedLong(const Bytes& bytes) {
    return word(0xF000U | static_cast<unsigned>(bytes.size())) + bytes;
}

Bytes section(const SectionFields& fields, const Bytes& body) {
    const auto flags = static_cast<uint8_t>(0xC1 | fields.version << 1);
    const Bytes content =
        word(fields.extension) + Bytes{flags, fields.number, fields.lastNumber} + body;
    const auto length = static_cast<unsigned>(content.size() + 4);
    const Bytes whole = Bytes{fields.tableId} + word(0xB000U | length) + content;
    const uint32_t checksum = desktop::crc32(whole.data(), whole.size());
    return whole + word(checksum >> 16) + word(checksum & 0xFFFF);
}

void Taker::onPacket(const desktop::TransportPacket& packet, int64_t arrival) {
    stream.insert(stream.end(), packet.bytes(), packet.bytes() + packet.kSize);
    arrivals.push_back(arrival);
}

Bytes Packetizer::packets(desktop::Pid pid, const Bytes& section) {
    constexpr size_t kPayload = desktop::TransportPacket::kSize - 4;
    Bytes rest = Bytes{0} + section;
    Bytes result;
    for (bool isFirst = true; !rest.empty(); isFirst = false) {
        const uint8_t counter = m_counters[pid]++ & 0x0F;
        const size_t size = std::min(rest.size(), kPayload);
        Bytes packet = Bytes{0x47} + word((isFirst ? 0x4000U : 0U) | pid) +
                       Bytes{static_cast<uint8_t>(0x10 | counter)} +
                       Bytes(rest.data(), rest.data() + size);
        packet.resize(desktop::TransportPacket::kSize, 0xFF);
        result = result + packet;
        rest.erase(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(size));
    }
    return result;
}

Bytes clockPacket(desktop::Pid pid, int64_t clock) {
    const int64_t base = clock / 300 % (int64_t{1} << 33);
    Bytes packet = Bytes{0x47} + word(pid) + Bytes{0x20, 183, 0};
    if (clock != 0) {
        packet[5] = 0x10;
        packet = packet + word(static_cast<unsigned>(base >> 17) & 0xFFFF) +
                 word(static_cast<unsigned>(base >> 1) & 0xFFFF) +
                 word(static_cast<unsigned>((base & 1) << 15 | 0x7E00 | clock % 300));
    }
    packet.resize(desktop::TransportPacket::kSize, 0xFF);
    return packet;
}

Bytes videoPacket(desktop::Pid pid, bool begins, bool isKey) {
    Bytes packet = Bytes{0x47} + word((begins ? 0x4000U : 0U) | pid) + Bytes{0x10};
    // The header of a packetised elementary stream's packet, an access unit's delimiter, and a
    // picture's first bytes: parameters of a sequence, or a picture that needs others.
    if (begins) {
        packet = packet + Bytes{0, 0, 1, 0xE0, 0, 0, 0x80, 0x80, 5, 0x21, 0, 1, 0, 1} +
                 Bytes{0, 0, 0, 1, 9, 0xF0, 0, 0, 0, 1} +
                 Bytes{isKey ? uint8_t{0x67} : uint8_t{0x41}};
    }
    packet.resize(desktop::TransportPacket::kSize, 0xFF);
    return packet;
}

}  // namespace quiravent::test
