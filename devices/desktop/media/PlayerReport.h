#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "graphics/Geometry.h"
#include "media/MediaErrors.h"
#include "media/Packet.h"
#include "media/PacketCache.h"

namespace quiravent::desktop {

/// What a player is doing, for those who watch it from outside.
struct PlayerReport {
    enum class State {
        idle,       ///< nothing has been asked for yet
        fetching,   ///< asked to fetch
        fetched,    ///< ready to be started
        buffering,  ///< started, and not enough is there
        playing,    ///< time runs
        paused,
        suspended,  ///< halted by the device
        stopped,
        completed,
        failed,   ///< by `error`
        aborted,  ///< ended by the device
    };
    State state = State::idle;
    MediaError error = MediaError::none;
    int64_t begin = 0;  ///< this and the next two: in microseconds, zeros before anything is known
    int64_t now = 0;
    int64_t end = 0;
    double speed = 1;
    uint8_t volume = 100;  ///< in hundredths of the medium's own amplitude
    Rect bounds{};
    std::vector<TimeRange> buffered;
    std::vector<TrackRef> tracks;
    std::array<std::optional<uint32_t>, kTrackKinds> selected;  ///< id of a track of each kind
};

/// The names of the states, under their numbers.
const std::vector<std::string>& playerStateNames();

}  // namespace quiravent::desktop
