#pragma once

#include "control/ControlTarget.h"
#include "control/Work.h"

namespace quiravent::desktop {

// The commands of the control channel about the tuner and what goes wrong with its signal.

Work tuner(const Request& request, ControlSession& session);
Work waitTuner(const Request& request, ControlSession& session);
Work signalTroubles(const Request& request, ControlSession& session);

}  // namespace quiravent::desktop
