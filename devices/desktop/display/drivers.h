#pragma once

#include <memory>
#include <string>
#include <vector>

#include "display/DisplayDriver.h"
#include "display/DisplayInput.h"

namespace quiravent::desktop {

/// The name that stands for the first driver that works here.
inline constexpr const char* kAutomaticDriver = "auto";

/// Names of all drivers, in the order in which they are tried.
std::vector<std::string> displayDriverNames();

/// The driver of that name, or for kAutomaticDriver the first that works here; one that should work
/// here and doesn't is told. Throws DeviceError with the driver's reason when there is none.
/// input: where the driver tells what viewers do.
std::unique_ptr<DisplayDriver> createDisplayDriver(const std::string& name,
                                                   const DisplayInput& input);

}  // namespace quiravent::desktop
