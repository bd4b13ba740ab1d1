#pragma once

#include <string>

class DTVPlayer;

/// Live players, and reserved entry points that do nothing. Script thread.
class TunerServices {
  public:
    static void GetAllTransportStreams() {}
    static void GetTableInfo(const std::string&, const std::string&) {}
    static void UnselectTransportStream() {}
    static void OpenDemuxFilter(const std::string&, int, int) {}

    /// The device gets the low 16 bits of each packet identifier.
    /// \return owned by the caller; null when the device refuses
    static DTVPlayer* GetPlayer(int videoPid, int audioPid, int pcrPid);
};
