#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quiravent::desktop {

/// Two bytes of captions, as pictures carry them (ATSC A/53, part 4).
struct CaptionPair {
    enum class Kind : uint8_t {
        field1 = 0,  ///< CEA-608, each byte with odd parity
        field2 = 1,
        packetData = 2,   ///< CEA-708
        packetStart = 3,  ///< the same, and a packet begins here
    };
    Kind kind;
    std::array<uint8_t, 2> bytes;
};

/// The valid pairs of one picture. data: three bytes for each pair, the first telling the kind.
std::vector<CaptionPair> captionPairs(const uint8_t* data, size_t size);

}  // namespace quiravent::desktop
