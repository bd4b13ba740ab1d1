#pragma once

#include <cstdint>

#include "television/TransportPacket.h"

namespace quiravent::desktop {

/// Tables by the first byte of their sections.
enum TableId : uint8_t {
    kAssociation = 0x00,
    kProgramMap = 0x02,
    kNetwork = 0x40,
    kServices = 0x42,
    kPresentFollowing = 0x4E,
    kTimeAndDate = 0x70,
    kTimeOffset = 0x73,
};

/// Of sections of all tables but those of events.
constexpr size_t kMaxSectionSize = 1024;

/// Carries the table with the time.
constexpr Pid kTimePid = 0x0014;

}  // namespace quiravent::desktop
