#include "display/drivers.h"

#include "display/headless/HeadlessDisplay.h"
#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

struct DriverEntry {
    const char* name;
    /// Throws DeviceError where the driver doesn't work.
    std::unique_ptr<DisplayDriver> (*create)();
};

const DriverEntry kDrivers[] = {
    {HeadlessDisplay::kName,
     []() -> std::unique_ptr<DisplayDriver> { return std::make_unique<HeadlessDisplay>(); }},
};

}  // namespace

std::vector<std::string> displayDriverNames() {
    std::vector<std::string> names;
    for (const DriverEntry& driver : kDrivers) names.emplace_back(driver.name);
    return names;
}

std::unique_ptr<DisplayDriver> createDisplayDriver(const std::string& name) {
    std::string reasons;
    for (const DriverEntry& driver : kDrivers) {
        if (name != kAutomaticDriver && name != driver.name) continue;
        try {
            return driver.create();
        } catch (const DeviceError& error) {
            reasons += joined("; ", driver.name, ": ", error.what());
        }
    }
    throw DeviceError(e_pl_status_unavailable, "no display driver works here" + reasons);
}

}  // namespace quiravent::desktop
