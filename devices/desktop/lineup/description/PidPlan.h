#pragma once

#include <map>

#include "lineup/description/fields.h"
#include "television/TransportPacket.h"

namespace quiravent::desktop::lineup {

/// Which packet identifier carries what.
class PidPlan {
  public:
    /// Notes one that the file names; 0: none is named. Throws DeviceError when it is taken.
    void claim(Pid pid, const Place& place);

    /// Gives a stream that has none the next free one from `first` on.
    void fill(Pid& pid, Pid first);

  private:
    std::map<Pid, std::string> m_users;
};

}  // namespace quiravent::desktop::lineup
