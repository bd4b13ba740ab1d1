#pragma once

#include <optional>

#include "captions/CaptionPair.h"

namespace quiravent::desktop {

/// Picks one of the four channels, CC1 to CC4, that share the two fields of CEA-608.
class LineCaptionChannel {
  public:
    static constexpr unsigned kChannels = 4;

    /// number: 1 to kChannels.
    explicit LineCaptionChannel(unsigned number);

    /// The pair as it would be in CC1, when it belongs to the channel.
    std::optional<CaptionPair> pick(const CaptionPair& pair);

  private:
    const CaptionPair::Kind m_field;
    const uint8_t m_channelBit;  ///< of the control codes
    bool m_isOurs = false;       ///< what characters follow belong to the channel
};

}  // namespace quiravent::desktop
