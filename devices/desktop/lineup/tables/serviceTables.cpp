#include "lineup/tables/sectionFrame.h"
#include "lineup/tables/sections.h"
#include "lineup/tables/textCoding.h"
#include "television/tableIds.h"

namespace quiravent::desktop::lineup {

namespace {

constexpr unsigned kReserved = 0xF;
constexpr unsigned kTelevision = 1;
constexpr unsigned kRadio = 2;
constexpr unsigned kRunning = 4;
constexpr unsigned kNotRunning = 1;

Bytes coded(Standard standard, const std::string& text) {
    return encodeText(standard, text).value_or(Bytes());
}

unsigned typeOf(const Service& service) { return service.video ? kTelevision : kRadio; }

void writeServiceDescriptor(ByteWriter& out, Standard standard, const Service& service) {
    out.byte(descriptor::kService);
    out.counted([&] {
        out.byte(typeOf(service));
        out.counted([&] { out.append(coded(standard, service.provider)); });
        out.counted([&] { out.append(coded(standard, service.name)); });
    });
}

void writeDescription(ByteWriter& out, Standard standard, const Service& service) {
    constexpr unsigned kNoSchedule = 0xFC;
    out.word(service.id);
    out.byte(kNoSchedule | (service.present ? 1U : 0U));
    out.countedLoop(kRunning << 1, [&] { writeServiceDescriptor(out, standard, service); });
}

/// A table whose parts are divided among sections as they fit.
Sections divided(SectionHead head, size_t mostBytes, const std::vector<Bytes>& parts,
                 const WriteBody& writeStart) {
    std::vector<Bytes> bodies(1);
    for (const Bytes& part : parts) {
        if (bodies.back().size() + part.size() > mostBytes) bodies.emplace_back();
        bodies.back().insert(bodies.back().end(), part.begin(), part.end());
    }
    head.lastNumber = static_cast<uint8_t>(bodies.size() - 1);
    Sections sections;
    for (const Bytes& body : bodies) {
        head.number = static_cast<uint8_t>(sections.size());
        sections.push_back(longSection(head, [&](ByteWriter& out) {
            writeStart(out);
            out.append(body);
        }));
    }
    return sections;
}

constexpr unsigned toBcd(int64_t number) {
    return static_cast<unsigned>(number / 10 % 10 << 4 | number % 10);
}

constexpr int64_t kDay = 86400;

void writeTimeOfDay(ByteWriter& out, int64_t seconds) {
    out.byte(toBcd(seconds / 3600));
    out.byte(toBcd(seconds / 60 % 60));
    out.byte(toBcd(seconds % 60));
}

/// A date as days of the Modified Julian calendar and the time of day (EN 300 468, annex C). ISDB
/// tells the time of Brasília.
void writeDate(ByteWriter& out, Standard standard, int64_t time) {
    constexpr int64_t kFirstOf1970 = 40587;
    constexpr int64_t kBrasilia = -3 * 3600;
    const int64_t told = standard == Standard::isdb ? time + kBrasilia : time;
    const int64_t day = (told >= 0 ? told : told - kDay + 1) / kDay;
    out.word(static_cast<unsigned>(kFirstOf1970 + day));
    writeTimeOfDay(out, told - day * kDay);
}

void writeEvent(ByteWriter& out, Standard standard, const Event& event, unsigned running) {
    out.word(event.id);
    writeDate(out, standard, event.start);
    writeTimeOfDay(out, event.duration);
    out.countedLoop(running << 1, [&] {
        out.byte(descriptor::kShortEvent);
        out.counted([&] {
            out.append(event.language);
            out.counted([&] { out.append(coded(standard, event.name)); });
            out.counted([&] { out.append(coded(standard, event.text)); });
        });
    });
}

void writeNetworkName(ByteWriter& out, const Lineup& lineup) {
    if (lineup.networkName.empty()) return;
    out.byte(descriptor::kNetworkName);
    out.counted([&] { out.append(coded(lineup.standard, lineup.networkName)); });
}

void writeServiceList(ByteWriter& out, const Lineup& lineup) {
    out.byte(descriptor::kServiceList);
    out.counted([&] {
        for (const Service& service : lineup.services) {
            out.word(service.id);
            out.byte(typeOf(service));
        }
    });
}

/// By this descriptor a receiver knows that texts are those of ISDB. Channel 14 of Brazil: mode 3,
/// guard interval of a sixteenth; the frequency in sevenths of a MHz.
void writeIsdbDelivery(ByteWriter& out) {
    constexpr unsigned kAreaAndMode = 0x0006;
    constexpr unsigned kFrequency = 3312;
    out.byte(descriptor::kIsdbTerrestrialDelivery);
    out.counted([&] {
        out.word(kAreaAndMode);
        out.word(kFrequency);
    });
}

Bytes eventSection(const Lineup& lineup, const Service& service, uint8_t number) {
    const std::optional<Event>& event = number == 0 ? service.present : service.following;
    const unsigned running = number == 0 ? kRunning : kNotRunning;
    return longSection({table::kEitActualPresentFollowing, service.id, number, 1},
                       [&](ByteWriter& out) {
                           out.word(lineup.transportStreamId);
                           out.word(lineup.originalNetworkId);
                           out.byte(1);
                           out.byte(table::kEitActualPresentFollowing);
                           if (event) writeEvent(out, lineup.standard, *event, running);
                       });
}

}  // namespace

Sections descriptionTable(const Lineup& lineup) {
    constexpr size_t kFrameBytes = 15;
    std::vector<Bytes> parts;
    for (const Service& service : lineup.services) {
        ByteWriter part;
        writeDescription(part, lineup.standard, service);
        parts.push_back(part.take());
    }
    return divided({table::kSdtActual, lineup.transportStreamId}, kMaxSectionSize - kFrameBytes,
                   parts, [&](ByteWriter& out) {
                       out.word(lineup.originalNetworkId);
                       out.byte(0xFF);
                   });
}

Sections networkTable(const Lineup& lineup) {
    return {longSection({table::kNitActual, *lineup.networkId}, [&](ByteWriter& out) {
        out.countedLoop(kReserved, [&] { writeNetworkName(out, lineup); });
        out.countedLoop(kReserved, [&] {
            out.word(lineup.transportStreamId);
            out.word(lineup.originalNetworkId);
            out.countedLoop(kReserved, [&] {
                writeServiceList(out, lineup);
                if (lineup.standard == Standard::isdb) writeIsdbDelivery(out);
            });
        });
    })};
}

Sections eventTable(const Lineup& lineup) {
    Sections sections;
    for (const Service& service : lineup.services) {
        if (!service.present) continue;
        sections.push_back(eventSection(lineup, service, 0));
        sections.push_back(eventSection(lineup, service, 1));
    }
    return sections;
}

Sections timeTable(Standard standard, int64_t time) {
    constexpr unsigned kDateSize = 5;
    ByteWriter out;
    if (standard == Standard::dvb) {
        out.byte(table::kTdt);
        out.word(0x7000 | kDateSize);
        writeDate(out, standard, time);
        return {out.take()};
    }
    constexpr unsigned kLoopLengthAndChecksum = 6;
    out.byte(table::kTot);
    out.word(0x7000 | (kDateSize + kLoopLengthAndChecksum));
    writeDate(out, standard, time);
    out.countedLoop(kReserved, [] {});
    return {withChecksum(std::move(out))};
}

}  // namespace quiravent::desktop::lineup
