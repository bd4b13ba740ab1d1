#include "lineup/description/completeLineup.h"

#include <algorithm>
#include <array>
#include <set>

#include "config/Configuration.h"
#include "lineup/description/PidPlan.h"
#include "lineup/streams/loop.h"
#include "lineup/tables/textCoding.h"

namespace quiravent::desktop::lineup {

namespace {

constexpr Pid kFirstPid = 0x100;
constexpr Pid kPidsPerService = 0x10;
constexpr Pid kFirstAudio = 2;
constexpr Pid kSubtitles = 0xA;

/// Colours of test pictures and frequencies of test tones, in turn.
constexpr std::array<uint32_t, 8> kColours{0x1F5FA8, 0xA83A32, 0x2E7D4F, 0x7A4FA3,
                                           0xB0721A, 0x1C7C8C, 0x8C3A68, 0x5B6B1E};
constexpr std::array<double, 8> kTones{440, 880, 587, 698, 523, 784, 659, 494};

/// Bit rates of MPEG audio's layer II in stereo (ISO/IEC 11172-3, 2.4.2.3) that the range holds.
constexpr std::array<uint32_t, 9> kLayer2Rates{64000,  96000,  112000, 128000, 160000,
                                               192000, 224000, 256000, 320000};

/// Descriptors have at most 255 bytes.
constexpr size_t kMostServiceBytes = 252;
constexpr size_t kMostEventBytes = 250;
constexpr size_t kMostNameBytes = 255;

/// Bytes of a text in the tables; refuses one that they can't carry.
size_t codedSize(Standard standard, const std::string& text, const Place& place) {
    const std::optional<Bytes> bytes = encodeText(standard, text);
    if (!bytes) refuseValue(place, text, "with \"isdb\", the characters of ISO 8859-15");
    return bytes->size();
}

void checkEvent(const std::optional<Event>& event, Standard standard, const Place& place) {
    if (!event) return;
    const size_t name = codedSize(standard, event->name, place.at("name"));
    const size_t text = codedSize(standard, event->text, place.at("text"));
    if (name + text > kMostEventBytes) {
        refuseValue(place.at(event->text.empty() ? "name" : "text"),
                    event->text.empty() ? event->name : event->text,
                    joined("together with the name at most ", kMostEventBytes, " bytes"));
    }
}

void checkTexts(const std::vector<Caption>& texts, int64_t loopEnd, const Place& place) {
    int64_t previousEnd = 0;
    for (size_t i = 0; i < texts.size(); ++i) {
        const auto seconds = [](int64_t time) { return static_cast<double>(time) / 1000; };
        const Caption& caption = texts[i];
        if (caption.from < previousEnd) {
            refuseValue(place.at(i).at("from"), seconds(caption.from),
                        "a time that isn't before the end of the text that comes before");
        }
        if (caption.to <= caption.from || caption.to > loopEnd) {
            refuseValue(place.at(i).at("to"), seconds(caption.to),
                        joined("a time after its \"from\", and not after the end of the loop at ",
                               nlohmann::json(seconds(loopEnd)).dump()));
        }
        previousEnd = caption.to;
    }
}

void checkVideo(const Service& service, const Place& place) {
    if (!service.video) {
        if (service.audio.empty()) refuseMissing(place, "a video, or at least one sound track");
        if (service.captions) refuseValue(place, nullptr, "a video, since there are captions");
        return;
    }
    const Video& video = *service.video;
    if (video.width % 2 != 0) refuseValue(place.at("width"), video.width, "an even number");
    if (video.height % 2 != 0) refuseValue(place.at("height"), video.height, "an even number");
    if (video.copy && service.media.empty()) {
        refuseValue(place.at("copy"), true, "false, since the service has no \"media\"");
    }
    if (video.copy && service.captions) {
        refuseValue(place.at("copy"), true,
                    "false, since captions are put into pictures when they are coded");
    }
}

void checkAudio(const Service& service, const Place& place) {
    for (size_t i = 0; i < service.audio.size(); ++i) {
        const Audio& audio = service.audio[i];
        const Place audioPlace = place.at("audio").at(i);
        if (audio.copy && service.media.empty()) {
            refuseValue(audioPlace.at("copy"), true, "false, since the service has no \"media\"");
        }
        const bool isRate = std::find(kLayer2Rates.begin(), kLayer2Rates.end(), audio.bitRate) !=
                            kLayer2Rates.end();
        if (audio.codec == AudioCodec::mp2 && !isRate) {
            refuseValue(audioPlace.at("bitRate"), audio.bitRate,
                        joined("with \"mp2\", ", nlohmann::json(kLayer2Rates).dump()));
        }
    }
}

/// All is made in memory.
void checkSize(const Lineup& lineup, const Place& file) {
    constexpr uint64_t kMostBits = uint64_t{8} << 30;
    uint64_t rate = 0;
    for (const Service& service : lineup.services) {
        if (service.video) rate += service.video->bitRate;
        for (const Audio& audio : service.audio) rate += audio.bitRate;
    }
    const uint64_t seconds = static_cast<uint64_t>(lineup.duration / 1000) + 1;
    if (std::max(rate, lineup.bitRate) * seconds <= kMostBits) return;
    refuseValue(file.at("duration"), static_cast<double>(lineup.duration) / 1000,
                "a time in which the bit rates give at most 1 GiB");
}

void checkService(const Lineup& lineup, const Service& service, const Place& place) {
    const size_t name = codedSize(lineup.standard, service.name, place.at("name"));
    const size_t provider = codedSize(lineup.standard, service.provider, place.at("provider"));
    if (name + provider > kMostServiceBytes) {
        refuseValue(place.at("name"), service.name,
                    joined("together with the provider at most ", kMostServiceBytes, " bytes"));
    }
    checkVideo(service, place.at("video"));
    checkAudio(service, place);
    const int64_t loopEnd = loopDuration(lineup) / kTicksPerMillisecond;
    if (service.captions) {
        checkTexts(service.captions->texts, loopEnd, place.at("captions").at("texts"));
    }
    if (service.subtitles) {
        checkTexts(service.subtitles->texts, loopEnd, place.at("subtitles").at("texts"));
    }
    if (service.following && !service.present) {
        refuseMissing(place.at("present"), "an object, since there is a following event");
    }
    if (service.following && service.following->id != 0 &&
        service.following->id == service.present->id) {
        refuseValue(place.at("following").at("id"), service.following->id,
                    "another one than that of the present event");
    }
    checkEvent(service.present, lineup.standard, place.at("present"));
    checkEvent(service.following, lineup.standard, place.at("following"));
}

void giveServiceIds(Lineup& lineup, const Place& place) {
    std::set<uint16_t> taken;
    for (size_t i = 0; i < lineup.services.size(); ++i) {
        const uint16_t id = lineup.services[i].id;
        if (id != 0 && !taken.insert(id).second) {
            refuseValue(place.at(i).at("id"), id, "an identifier that no other service has");
        }
    }
    uint16_t next = 1;
    for (Service& service : lineup.services) {
        if (service.id != 0) continue;
        while (!taken.insert(next).second) ++next;
        service.id = next;
    }
}

/// A clock may go with one of its service's streams.
bool isStreamOf(const Service& service, Pid pid) {
    return (service.video && service.video->pid == pid) ||
           std::any_of(service.audio.begin(), service.audio.end(),
                       [pid](const Audio& audio) { return audio.pid == pid; });
}

void claimPids(const Service& service, const Place& place, PidPlan& plan) {
    plan.claim(service.mapPid, place.at("mapPid"));
    if (service.video) plan.claim(service.video->pid, place.at("video").at("pid"));
    for (size_t i = 0; i < service.audio.size(); ++i) {
        plan.claim(service.audio[i].pid, place.at("audio").at(i).at("pid"));
    }
    if (service.subtitles) plan.claim(service.subtitles->pid, place.at("subtitles").at("pid"));
    if (!isStreamOf(service, service.pcrPid)) plan.claim(service.pcrPid, place.at("pcrPid"));
}

void fillPids(Service& service, Pid first, PidPlan& plan) {
    plan.fill(service.mapPid, first);
    if (service.video) plan.fill(service.video->pid, first + 1);
    for (Audio& audio : service.audio) plan.fill(audio.pid, first + kFirstAudio);
    if (service.subtitles) plan.fill(service.subtitles->pid, first + kSubtitles);
    if (service.pcrPid == 0) {
        service.pcrPid = service.video ? service.video->pid : service.audio.front().pid;
    }
}

void giveTestSignals(Service& service, size_t index) {
    if (service.video && !service.video->colour) {
        service.video->colour = kColours[index % kColours.size()];
    }
    for (size_t i = 0; i < service.audio.size(); ++i) {
        double& tone = service.audio[i].tone;
        if (tone == 0) tone = kTones[(index + i) % kTones.size()];
    }
}

/// Events are told apart within their service.
void giveEventIds(Service& service) {
    if (service.present && service.present->id == 0) {
        const bool isTaken = service.following && service.following->id == 1;
        service.present->id = isTaken ? 2 : 1;
    }
    if (service.following && service.following->id == 0) {
        // 16 bits, of which 0 isn't used.
        service.following->id = static_cast<uint16_t>(service.present->id % 0xFFFF + 1);
    }
}

}  // namespace

void completeLineup(Lineup& lineup, const Place& file) {
    const Place services = file.at("services");
    PidPlan plan;
    if (codedSize(lineup.standard, lineup.networkName, file.at("networkName")) > kMostNameBytes) {
        refuseValue(file.at("networkName"), lineup.networkName,
                    joined("at most ", kMostNameBytes, " bytes"));
    }
    if (!lineup.networkId) lineup.networkId = lineup.originalNetworkId;
    if (lineup.font.empty()) lineup.font = Configuration().media.subtitleFont;
    for (size_t i = 0; i < lineup.services.size(); ++i) {
        checkService(lineup, lineup.services[i], services.at(i));
        claimPids(lineup.services[i], services.at(i), plan);
    }
    giveServiceIds(lineup, services);
    checkSize(lineup, file);
    for (size_t i = 0; i < lineup.services.size(); ++i) {
        fillPids(lineup.services[i], static_cast<Pid>(kFirstPid + i * kPidsPerService), plan);
        giveTestSignals(lineup.services[i], i);
        giveEventIds(lineup.services[i]);
    }
}

}  // namespace quiravent::desktop::lineup
