#include <algorithm>
#include <array>
#include <sstream>
#include <utility>

#include "media/FaultList.h"
#include "resources/Location.h"

namespace quiravent::desktop {

namespace {

struct Name {
    const char* text;
    Fault::Kind kind;
};
constexpr std::array<Name, 4> kNames{{{"slow", Fault::Kind::slow},
                                      {"stalled", Fault::Kind::stalled},
                                      {"dropped", Fault::Kind::dropped},
                                      {"unavailable", Fault::Kind::unavailable}}};

bool isRate(double value) { return value >= 1 && value <= 1e12; }

/// Reads "KIND FROM-TO [RATE] [off]".
bool parseFault(const std::string& text, Fault& fault) {
    std::istringstream words(text);
    std::string kind;
    char dash = 0;
    if (!(words >> kind >> fault.fromSecond >> dash >> fault.toSecond) || dash != '-') return false;
    bool known = false;
    for (const Name& name : kNames) {
        if (kind != name.text) continue;
        fault.kind = name.kind;
        known = true;
    }
    if (!known || !(fault.fromSecond >= 0) || !(fault.toSecond > fault.fromSecond)) return false;
    if (fault.kind == Fault::Kind::slow) {
        double rate = 0;
        if (!(words >> rate) || !isRate(rate)) return false;
        fault.bytesPerSecond = static_cast<uint64_t>(rate);
    }
    std::string rest;
    words >> rest;
    fault.enabled = rest != "off";
    return (rest.empty() || rest == "off") && (words >> std::ws).eof();
}

}  // namespace

const char* nameOf(Fault::Kind kind) {
    const auto* const found = std::find_if(kNames.begin(), kNames.end(),
                                           [kind](const Name& name) { return name.kind == kind; });
    return found->text;
}

Result<std::vector<Fault>> parseFaults(const std::string& text) {
    std::vector<Fault> faults;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, ';');) {
        if (part.find_first_not_of(' ') == std::string::npos) continue;
        Fault fault{};
        fault.enabled = true;
        if (!parseFault(part, fault)) return Failure{"not a fault of reading: " + inQuotes(part)};
        faults.push_back(fault);
    }
    return faults;
}

}  // namespace quiravent::desktop
