#include "lineup/check/UnitHead.h"

namespace quiravent::desktop::lineup {

namespace {

Ticks takeTime(ByteReader& reader) {
    const Ticks high = reader.byte() >> 1 & 7;
    const Ticks middle = reader.word() >> 1;
    const Ticks low = reader.word() >> 1;
    return (high << 30 | middle << 15 | low) * kTimeTicks;
}

}  // namespace

std::optional<Ticks> decodingTime(ByteView unit) {
    constexpr size_t kIdAndLength = 3;
    ByteReader reader(unit);
    if (reader.word() != 0 || reader.byte() != 1) return std::nullopt;
    reader.skip(kIdAndLength);
    if ((reader.byte() & 0xC0) != 0x80) return std::nullopt;
    const unsigned times = reader.byte() >> 6;
    reader.byte();
    if (times < 2) return std::nullopt;
    const Ticks pts = takeTime(reader);
    return times == 3 ? takeTime(reader) : pts;
}

}  // namespace quiravent::desktop::lineup
