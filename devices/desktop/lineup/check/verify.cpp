#include "lineup/check/verify.h"

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop::lineup {

namespace {

[[noreturn]] void differ(const std::string& what) {
    throw DeviceError(e_pl_status_io_error,
                      joined("the multiplex doesn't read back as it was described: ", what));
}

template <class Value>
void expect(const std::string& what, const Value& found, const Value& described) {
    if (found != described) differ(joined(what, " is ", found, ", not ", described));
}

void verifyEvent(const std::string& what, const std::optional<ServiceEvent>& found,
                 const std::optional<Event>& described, int64_t zone) {
    expect(what + "'s presence", found.has_value(), described.has_value());
    if (!described) return;
    expect(what + "'s id", found->id, described->id);
    expect(what + "'s name", found->title, described->name);
    expect(what + "'s text", found->text, described->text);
    expect(what + "'s language", found->language, described->language);
    expect(what + "'s start", found->start, described->start + zone);
    expect(what + "'s duration", found->duration, described->duration);
}

/// The codecs by packet identifier, in the order of the map.
std::vector<std::pair<Pid, StreamCodec>> codecsOf(const Service& service) {
    std::vector<std::pair<Pid, StreamCodec>> codecs;
    if (service.video) {
        const bool isH264 = service.video->codec == VideoCodec::h264;
        codecs.emplace_back(service.video->pid,
                            isH264 ? StreamCodec::h264 : StreamCodec::mpeg2Video);
    }
    for (const Audio& audio : service.audio) {
        const bool isAac = audio.codec == AudioCodec::aac;
        codecs.emplace_back(audio.pid, isAac ? StreamCodec::aac : StreamCodec::mpegAudio);
    }
    if (service.subtitles) codecs.emplace_back(service.subtitles->pid, StreamCodec::dvbSubtitle);
    return codecs;
}

void verifyService(const desktop::Service& found, const Service& described, int64_t zone) {
    const std::string what = joined("service ", described.id);
    expect(what + "'s id", found.number, described.id);
    expect(what + "'s name", found.name, described.name);
    expect(what + "'s provider", found.provider, described.provider);
    expect(what + "'s map", found.mapPid, described.mapPid);
    expect(what + "'s clock", found.pcrPid, described.pcrPid);
    const auto codecs = codecsOf(described);
    expect(what + "'s number of streams", found.streams.size(), codecs.size());
    for (size_t i = 0; i < codecs.size(); ++i) {
        expect(what + "'s packet identifier", found.streams[i].pid, codecs[i].first);
        expect<std::string>(what + "'s codec", nameOf(found.streams[i].codec),
                            nameOf(codecs[i].second));
    }
    verifyEvent(what + "'s present event", found.present, described.present, zone);
    verifyEvent(what + "'s following event", found.following, described.following, zone);
}

}  // namespace

void verify(const Lineup& lineup, const Inspection& inspection) {
    if (!inspection.problems.empty()) differ(inspection.problems.front());
    const MultiplexDescription& found = inspection.description;
    expect("the transport stream's id", found.transportStreamId, lineup.transportStreamId);
    expect("the network's name", found.networkName, lineup.networkName);
    expect("the number of services", found.services.size(), lineup.services.size());
    const int64_t zone = lineup.standard == Standard::isdb ? kBrasiliaZone : 0;
    for (size_t i = 0; i < lineup.services.size(); ++i) {
        verifyService(found.services[i], lineup.services[i], zone);
    }
}

}  // namespace quiravent::desktop::lineup
