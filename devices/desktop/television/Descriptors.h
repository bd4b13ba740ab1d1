#pragma once

#include <cstdint>
#include <optional>

#include "television/ByteReader.h"

namespace quiravent::desktop {

/// Descriptors of tables by their tags.
enum DescriptorTag : uint8_t {
    kRegistration = 0x05,
    kLanguage = 0x0A,
    kNetworkName = 0x40,
    kSatelliteDelivery = 0x43,
    kCableDelivery = 0x44,
    kServiceName = 0x48,
    kShortEvent = 0x4D,
    kTeletext = 0x56,
    kSubtitling = 0x59,
    kTerrestrialDelivery = 0x5A,
    kAc3 = 0x6A,
    kEnhancedAc3 = 0x7A,
    kIsdbAudioComponent = 0xC4,
    kIsdbTerrestrialDelivery = 0xFA,
    kIsdbDataComponent = 0xFD,
};

/// The content of the first descriptor with that tag in a loop of them; none when there is none.
inline std::optional<ByteView> findDescriptor(ByteView loop, DescriptorTag tag) {
    ByteReader reader(loop);
    while (!reader.isAtEnd()) {
        const uint8_t found = reader.byte();
        const ByteView content = reader.takeCounted();
        if (found == tag) return content;
    }
    return std::nullopt;
}

}  // namespace quiravent::desktop
