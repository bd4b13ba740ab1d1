#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "common/TemporaryFolder.h"
#include "lineup/check/Inspection.h"
#include "lineup/description/Lineup.h"
#include "media/MediaInput.h"

namespace quiravent::test {

using Bytes = std::vector<uint8_t>;

/// The line-up of a file with that text, whose name is lineup.json.
desktop::lineup::Lineup lineupOf(const std::string& json);

/// The multiplex of such a line-up.
Bytes multiplexOf(const std::string& json);

/// What is told of a text that can't be made into a multiplex, without the folder's name; "none"
/// when it can.
std::string refusalOf(const std::string& json);

desktop::ByteView viewOf(const Bytes& bytes);

/// Twice the same, as a receiver gets a loop.
Bytes twice(const Bytes& bytes);

/// What the packets of an identifier carry, without the heads of units.
Bytes contentOf(const Bytes& multiplex, desktop::Pid pid);

/// Calls use for each packet of a medium's first track of a kind, and with null behind the last
/// one. name: of the file that the bytes are put into; its ending tells the format.
void readTrack(
    const Bytes& bytes, const std::string& name, desktop::TrackKind kind,
    const std::function<void(const desktop::Track& track, const desktop::Packet* packet)>& use);

/// Decodes all of a medium's first track of a kind, and calls use for each picture or piece of
/// sound. name: as above.
void decode(const Bytes& bytes, const std::string& name, desktop::TrackKind kind,
            const std::function<void(const AVFrame&)>& use);

/// The brightness at places of a picture, which must outlive what is given.
inline auto brightnessOf(const AVFrame& picture) {
    return [&picture](uint32_t x, uint32_t y) {
        return picture.data[0][y * static_cast<uint32_t>(picture.linesize[0]) + x];
    };
}

/// The decoded sound of a file with those bytes: the left channel, at 48 kHz.
std::vector<float> soundOf(const Bytes& bytes, const std::string& name);

/// How often a sound goes up through zero, from one sample to another.
size_t crossingsOf(const std::vector<float>& samples, size_t from, size_t to);

}  // namespace quiravent::test
