#include "lineup/check/findProblems.h"

#include <cmath>

#include "support/Text.h"

namespace quiravent::desktop::lineup {

namespace {

/// Receivers allow 40 ms (TR 101 290, 2.3).
constexpr Ticks kLongestClockInterval = 40 * kTicksPerMillisecond;
/// What a reference may be off by at a constant rate: 500 ns (ISO/IEC 13818-1, 2.4.2.2).
constexpr Ticks kLargestDeviation = kPcrRate / 2000000 + 1;

using Problems = std::vector<std::string>;

long milliseconds(Ticks ticks) {
    return std::lround(static_cast<double>(ticks) / kTicksPerMillisecond);
}

void checkClock(Pid pid, const ClockFacts& clock, Problems& problems) {
    if (clock.longestInterval > kLongestClockInterval) {
        problems.push_back(joined("clock ", pid, ": ", milliseconds(clock.longestInterval),
                                  " ms between two references; allowed: 40"));
    }
    if (clock.largestDeviation > kLargestDeviation) {
        problems.push_back(joined("clock ", pid, ": up to ",
                                  clock.largestDeviation * 1000 / (kPcrRate / 1000000),
                                  " ns off a constant rate; allowed: 500"));
    }
}

void checkStream(Pid pid, const StreamFacts& facts, Problems& problems) {
    if (facts.gaps > 0) {
        problems.push_back(joined("packet identifier ", pid, ": its counter has gaps: ", facts.gaps,
                                  ", with that where the file begins again"));
    }
    if (facts.hasLead && facts.shortestLead < 0) {
        problems.push_back(joined("packet identifier ", pid, ": arrives up to ",
                                  milliseconds(-facts.shortestLead),
                                  " ms after it is to be decoded"));
    }
}

void checkService(const desktop::Service& service, const Inspection& inspection,
                  Problems& problems) {
    const std::string subject = joined("service ", service.number, ": ");
    if (!service.hasMap) {
        problems.push_back(subject + "its program map is missing");
        return;
    }
    if (inspection.clocks.count(service.pcrPid) == 0) {
        problems.push_back(
            joined(subject, "its clock, packet identifier ", service.pcrPid, ", is missing"));
    }
    for (const ElementaryStream& stream : service.streams) {
        const auto facts = inspection.streams.find(stream.pid);
        if (facts != inspection.streams.end() && facts->second.units > 0) continue;
        problems.push_back(
            joined(subject, "its stream with packet identifier ", stream.pid, " is missing"));
    }
}

}  // namespace

Problems findProblems(const Inspection& inspection) {
    if (inspection.packets == 0) return {"there are no packets of a transport stream"};
    Problems problems;
    if (inspection.syncLosses > 0) {
        problems.push_back(
            joined("packets don't follow one another: ", inspection.syncLosses, " times"));
    }
    if (inspection.faultySections > 0) {
        problems.push_back(joined("sections with a wrong checksum: ", inspection.faultySections));
    }
    if (inspection.description.services.empty()) problems.emplace_back("there are no services");
    for (const desktop::Service& service : inspection.description.services) {
        checkService(service, inspection, problems);
    }
    for (const auto& [pid, facts] : inspection.streams) checkStream(pid, facts, problems);
    for (const auto& [pid, clock] : inspection.clocks) checkClock(pid, clock, problems);
    return problems;
}

}  // namespace quiravent::desktop::lineup
