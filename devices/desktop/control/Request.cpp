#include "control/Request.h"

#include <algorithm>

#include "input/Keys.h"
#include "support/DeviceError.h"
#include "support/Text.h"
#include "support/jsonDepth.h"
#include "support/shownValue.h"

namespace quiravent::desktop {

namespace {

constexpr const char* kId = "id";
constexpr const char* kCommand = "command";

[[noreturn]] void refuse(const std::string& reason) {
    throw DeviceError(e_pl_status_invalid_argument, reason);
}

[[noreturn]] void refuseValue(const char* parameter, const OrderedJson& value,
                              const std::string& allowed) {
    refuse(joined(parameter, " is ", shownValue(value), "; allowed: ", allowed));
}

/// The parser's own report without its number of the kind of error.
std::string parseReason(const nlohmann::json::exception& error) {
    const std::string text = error.what();
    const size_t start = text.find("] ");
    return start == std::string::npos ? text : text.substr(start + 2);
}

}  // namespace

OrderedJson Request::parse(std::string_view line) {
    const auto watch = [](int depth, OrderedJson::parse_event_t, OrderedJson&) {
        if (depth > kMaxJsonDepth) {
            refuse(joined("the request is nested too deeply; allowed: ", kMaxJsonDepth, " levels"));
        }
        return true;
    };
    try {
        OrderedJson object = OrderedJson::parse(line, watch);
        if (object.is_object()) return object;
        refuseValue("the request", object, "an object with a command");
    } catch (const nlohmann::json::exception& error) {
        refuse("the request is no JSON on one line: " + parseReason(error));
    }
}

std::optional<OrderedJson> Request::id() const {
    const auto id = m_object.find(kId);
    return id == m_object.end() ? std::nullopt : std::optional(*id);
}

std::string Request::command() const { return text(kCommand); }

void Request::expectOnly(const std::vector<std::string>& parameters) const {
    for (const auto& [name, value] : m_object.items()) {
        const bool isKnown = name == kId || name == kCommand ||
                             std::count(parameters.begin(), parameters.end(), name) != 0;
        if (isKnown) continue;
        refuse(joined("unknown parameter ", shownValue(name), " of ", command(),
                      "; allowed: ", parameters.empty() ? "none" : listed(parameters)));
    }
}

std::string Request::text(const char* parameter) const {
    constexpr const char* kAllowed = "a text that isn't empty and has no NUL";
    const OrderedJson& given = value(parameter, kAllowed);
    if (!given.is_string()) refuseValue(parameter, given, kAllowed);
    auto text = given.get<std::string>();
    if (text.empty() || text.find('\0') != std::string::npos) {
        refuseValue(parameter, given, kAllowed);
    }
    return text;
}

int32_t Request::key(const char* parameter) const {
    const OrderedJson& given = value(parameter, kRemoteKeyRule);
    if (const auto code = remoteKeyCodeFrom(given)) return *code;
    refuseValue(parameter, given, kRemoteKeyRule);
}

bool Request::flag(const char* parameter) const {
    constexpr const char* kAllowed = "true, false";
    const OrderedJson& given = value(parameter, kAllowed);
    if (!given.is_boolean()) refuseValue(parameter, given, kAllowed);
    return given.get<bool>();
}

uint64_t Request::number(const char* parameter, uint64_t most) const {
    const std::string allowed = joined("a whole number from 0 to ", most);
    const OrderedJson& given = value(parameter, allowed);
    const bool isAllowed = given.is_number_unsigned() && given.get<uint64_t>() <= most;
    if (!isAllowed) refuseValue(parameter, given, allowed);
    return given.get<uint64_t>();
}

uint64_t Request::number(const char* parameter, uint64_t most, uint64_t otherwise) const {
    return has(parameter) ? number(parameter, most) : otherwise;
}

double Request::real(const char* parameter, double least, double most) const {
    const std::string allowed =
        joined("a number from ", shownValue(least), " to ", shownValue(most));
    const OrderedJson& given = value(parameter, allowed);
    if (!given.is_number()) refuseValue(parameter, given, allowed);
    const auto number = given.get<double>();
    if (number < least || number > most) refuseValue(parameter, given, allowed);
    return number;
}

size_t Request::choice(const char* parameter, const std::vector<std::string>& choices) const {
    const OrderedJson& given = value(parameter, listed(choices));
    const auto found = std::find(choices.begin(), choices.end(), given);
    if (found == choices.end()) refuseValue(parameter, given, listed(choices));
    return static_cast<size_t>(found - choices.begin());
}

const OrderedJson& Request::value(const char* parameter, const std::string& allowed) const {
    const auto found = m_object.find(parameter);
    if (found == m_object.end()) refuse(joined(parameter, " is missing; allowed: ", allowed));
    return *found;
}

}  // namespace quiravent::desktop
