#pragma once

#include <cstddef>
#include <cstdint>

/// The numbers of ISO/IEC 13818-1, ETSI EN 300 468 and ABNT NBR 15603 that a transport stream is
/// read and written by.
namespace quiravent::desktop {

constexpr size_t kMaxSectionSize = 1024;  ///< of all tables but those of events

/// Carries the time and date table, or the time offset table.
constexpr uint16_t kTdtPid = 0x0014;

namespace table {
constexpr uint8_t kPat = 0x00;
constexpr uint8_t kPmt = 0x02;
constexpr uint8_t kNitActual = 0x40;
constexpr uint8_t kSdtActual = 0x42;
constexpr uint8_t kEitActualPresentFollowing = 0x4E;
constexpr uint8_t kTdt = 0x70;
constexpr uint8_t kTot = 0x73;
}  // namespace table

namespace descriptor {
constexpr uint8_t kRegistration = 0x05;
constexpr uint8_t kIso639Language = 0x0A;
constexpr uint8_t kNetworkName = 0x40;
constexpr uint8_t kServiceList = 0x41;
constexpr uint8_t kSatelliteDelivery = 0x43;
constexpr uint8_t kCableDelivery = 0x44;
constexpr uint8_t kService = 0x48;
constexpr uint8_t kShortEvent = 0x4D;
constexpr uint8_t kStreamIdentifier = 0x52;
constexpr uint8_t kTeletext = 0x56;
constexpr uint8_t kLocalTimeOffset = 0x58;
constexpr uint8_t kSubtitling = 0x59;
constexpr uint8_t kTerrestrialDelivery = 0x5A;
constexpr uint8_t kAc3 = 0x6A;
constexpr uint8_t kEnhancedAc3 = 0x7A;
constexpr uint8_t kCaptionService = 0x86;
constexpr uint8_t kIsdbAudioComponent = 0xC4;
constexpr uint8_t kIsdbTerrestrialDelivery = 0xFA;
constexpr uint8_t kIsdbDataComponent = 0xFD;
}  // namespace descriptor

namespace stream_type {
constexpr uint8_t kMpeg1Video = 0x01;
constexpr uint8_t kMpeg2Video = 0x02;
constexpr uint8_t kMpeg1Audio = 0x03;
constexpr uint8_t kMpeg2Audio = 0x04;
constexpr uint8_t kPrivateData = 0x06;
constexpr uint8_t kAacAdts = 0x0F;
constexpr uint8_t kAacLatm = 0x11;
constexpr uint8_t kH264 = 0x1B;
constexpr uint8_t kH265 = 0x24;
constexpr uint8_t kAc3 = 0x81;  // this and the following: ATSC A/53
constexpr uint8_t kEac3 = 0x87;
}  // namespace stream_type

}  // namespace quiravent::desktop
