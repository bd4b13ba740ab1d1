#include <sstream>
#include <utility>

#include "resources/Location.h"
#include "support/Clock.h"
#include "television/SignalFaults.h"

namespace quiravent::desktop {

namespace {

constexpr double kMostSeconds = 3600;  // seconds

bool hasEnded(std::istringstream& words) { return (words >> std::ws).eof(); }

/// Reads "FROM-TO [RATE] [off]", behind the kind.
bool parseFault(std::istringstream& words, SignalFault& fault) {
    char dash = 0;
    if (!(words >> fault.fromSecond >> dash >> fault.toSecond) || dash != '-') return false;
    if (!(fault.fromSecond >= 0) || !(fault.toSecond > fault.fromSecond)) return false;
    if (fault.kind == SignalFault::Kind::errors) {
        if (!(words >> fault.errorRate) || !isErrorRate(fault.errorRate)) return false;
    }
    std::string rest;
    words >> rest;
    fault.enabled = rest != "off";
    return (rest.empty() || rest == "off") && hasEnded(words);
}

bool parseDelay(std::istringstream& words, int64_t& delay) {
    double seconds = 0;
    if (!(words >> seconds) || !(seconds >= 0 && seconds <= kMostSeconds)) return false;
    delay = static_cast<int64_t>(seconds * kSecond);
    return hasEnded(words);
}

bool parsePart(const std::string& text, SignalTroubles& troubles) {
    std::istringstream words(text);
    std::string kind;
    words >> kind;
    if (kind == "delay") return parseDelay(words, troubles.lockDelay);
    if (kind == "seed") return words >> troubles.seed && hasEnded(words);
    if (kind != "lost" && kind != "errors") return false;
    SignalFault fault;
    if (kind == "errors") fault.kind = SignalFault::Kind::errors;
    if (!parseFault(words, fault)) return false;
    troubles.faults.push_back(fault);
    return true;
}

}  // namespace

Result<SignalTroubles> parseSignalFaults(const std::string& text) {
    SignalTroubles troubles;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, ';');) {
        if (part.find_first_not_of(' ') == std::string::npos) continue;
        if (!parsePart(part, troubles))
            return Failure{"not a fault of a signal: " + inQuotes(part)};
    }
    return troubles;
}

}  // namespace quiravent::desktop
