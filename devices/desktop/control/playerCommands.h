#pragma once

#include "control/ControlTarget.h"
#include "control/Work.h"

namespace quiravent::desktop {

// The commands of the control channel about players and what goes wrong with their reading.

Work players(const Request& request, ControlSession& session);
Work waitPlayer(const Request& request, ControlSession& session);
Work haltPlayer(const Request& request, ControlSession& session);
Work captions(const Request& request, ControlSession& session);
Work faults(const Request& request, ControlSession& session);

}  // namespace quiravent::desktop
