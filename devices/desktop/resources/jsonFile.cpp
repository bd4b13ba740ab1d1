#include "resources/jsonFile.h"

#include <set>
#include <string_view>
#include <vector>

#include "resources/LocalFile.h"
#include "support/DeviceError.h"
#include "support/Text.h"
#include "support/jsonDepth.h"
#include "support/shownValue.h"

namespace quiravent::desktop {

namespace {

using nlohmann::json;

constexpr size_t kSizeLimit = 4U << 20;

[[noreturn]] void refuse(const std::string& reason) {
    throw DeviceError(e_pl_status_invalid_argument, reason);
}

std::string readText(const std::string& file, const std::string& what) {
    const Result<Bytes> bytes = readLocalFile(file, kSizeLimit);
    if (!bytes) refuse(joined(file, ": ", what, " can't be read: ", bytes.reason()));
    return {bytes->begin(), bytes->end()};
}

/// The parser's own report without its number of the kind of error.
std::string parseReason(const json::exception& error) {
    const std::string_view text = error.what();
    const size_t start = text.find("] ");
    return std::string(start == std::string_view::npos ? text : text.substr(start + 2));
}

}  // namespace

json readJsonFile(const std::string& file, const std::string& what) {
    std::vector<std::set<std::string>> keys;
    const auto watch = [&](int depth, json::parse_event_t event, json& parsed) {
        if (depth > kMaxJsonDepth) {
            refuse(joined(file, ": nested too deeply; allowed: ", kMaxJsonDepth, " levels"));
        }
        if (event == json::parse_event_t::object_start) keys.emplace_back();
        if (event == json::parse_event_t::object_end) keys.pop_back();
        if (event == json::parse_event_t::key && !keys.back().insert(parsed).second) {
            refuse(joined(file, ": key ", shownValue(parsed),
                          " stands twice in one object; allowed: once"));
        }
        return true;
    };
    try {
        return json::parse(readText(file, what), watch);
    } catch (const json::exception& error) {
        refuse(joined(file, ": not valid JSON: ", parseReason(error)));
    }
}

}  // namespace quiravent::desktop
