#pragma once

#include "control/ControlTarget.h"
#include "control/Request.h"
#include "control/Work.h"

namespace quiravent::desktop {

/// Sets going what a request asks for; docs/control-channel.md tells what there is. What is wrong
/// with it is thrown as DeviceError. The session has to outlive the work.
Work startCommand(const Request& request, ControlSession& session);

}  // namespace quiravent::desktop
