#include "lineup/description/fields.h"
#include "support/DeviceError.h"
#include "support/shownValue.h"

namespace quiravent::desktop::lineup {

namespace {

[[noreturn]] void refuse(const std::string& reason) {
    throw DeviceError(e_pl_status_invalid_argument, reason);
}

}  // namespace

void refuseValue(const Place& place, const nlohmann::json& value, const std::string& allowed) {
    refuse(joined(place.text(), " is ", shownValue(value), "; allowed: ", allowed));
}

void refuseMissing(const Place& place, const std::string& allowed) {
    refuse(joined(place.text(), " is missing; allowed: ", allowed));
}

void refuseKey(const Place& place, const nlohmann::json& value,
               const std::vector<std::string>& known) {
    refuse(joined(place.file(), ": unknown key ", place.path(), " with the value ",
                  shownValue(value), "; allowed: ", listed(known)));
}

}  // namespace quiravent::desktop::lineup
