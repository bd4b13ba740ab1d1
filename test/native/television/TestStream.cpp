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

}  // namespace quiravent::test
