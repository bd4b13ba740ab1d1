#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <utility>

#include "lineup/TestLineup.h"
#include "lineup/streams/FrameMark.h"
#include "support/Text.h"
#include "television/TransportPacket.h"
#include "television/tableIds.h"

namespace quiravent::desktop::lineup {
namespace {

using test::Bytes;
using test::multiplexOf;
using test::twice;
using test::viewOf;

/// Two services, of all that a service may have.
const char* const kTwoServices = R"({
    "duration": 1.9, "transportStreamId": 7, "networkName": "Rede Educação",
    "startTime": "2026-11-21T20:00:00-03:00",
    "services": [
        {"id": 257, "name": "Canal Educação", "video": {"width": 320, "height": 180, "pid": 400},
         "audio": [{"tone": 440, "pid": 401}],
         "present": {"name": "Ciência em Foco", "text": "A água.", "duration": 3600,
                     "start": "2026-11-21T19:30:00-03:00"},
         "following": {"name": "Jornal", "duration": 1800, "start": "2026-11-21T20:30:00-03:00"}},
        {"id": 2, "name": "Saúde", "pcrPid": 600,
         "video": {"codec": "mpeg2", "width": 320, "height": 180},
         "audio": [{"codec": "mp2"}, {"language": "eng"}],
         "subtitles": {"texts": [{"from": 0.2, "to": 1, "text": "Olá"}]}}]})";

/// Whatever a file holds that has been made has been compared with its description already, by what
/// a receiver reads it with; what follows is what that doesn't see.

TEST(Multiplex, ReadsBackAndGoesRound) {
    const Bytes once = multiplexOf(kTwoServices);
    for (const Bytes& bytes : {once, twice(once)}) {
        const Inspection found = inspect(viewOf(bytes));
        EXPECT_EQ(found.streams.at(kTdtPid).gaps, 0U);
        ASSERT_EQ(found.description.services.size(), 2U);
        EXPECT_EQ(found.description.services[0].name, "Canal Educação");
        EXPECT_EQ(found.description.services[0].present->text, "A água.");
        EXPECT_EQ(found.description.services[1].streams.size(), 4U);
        for (const auto& [pid, facts] : found.streams) EXPECT_EQ(facts.gaps, 0U) << pid;
    }
    const Inspection found = inspect(viewOf(once));
    EXPECT_TRUE(found.problems.empty());
    EXPECT_EQ(found.duration, 1920 * kTicksPerMillisecond) << "a multiple of all frames";
    EXPECT_EQ(found.streams.at(400).units, 48U);
    EXPECT_EQ(found.streams.at(401).units, 90U);
    ASSERT_EQ(found.clocks.count(600), 1U);
    for (const auto& [pid, clock] : found.clocks) {
        EXPECT_LE(clock.longestInterval, 40 * kTicksPerMillisecond) << pid;
        EXPECT_LE(clock.largestDeviation, 14) << pid;
    }
}

Inspection inspectionOf(const std::string& json) { return inspect(viewOf(multiplexOf(json))); }

TEST(Multiplex, HasTheRateThatIsAskedFor) {
    const Inspection found = inspectionOf(R"({"duration":2,"bitRate":3000000,"services":[
        {"name":"A","video":{"width":320,"height":180}}]})");
    EXPECT_NEAR(found.bitRate, 3000000, 1000);
}

TEST(Multiplex, IsAWholeNumberOfPicturesAtAnyRate) {
    using Rate = std::pair<const char*, Ticks>;  // and the duration of a picture
    for (const auto& [rate, picture] : {Rate{"23.976", 1126125}, Rate{"29.97", 900900},
                                        Rate{"50", 540000}, Rate{"59.94", 450450}}) {
        const Inspection found = inspectionOf(
            joined(R"({"duration":1,"services":[{"name":"A","video":{"width":160,"height":96,)",
                   R"("frameRate":)", rate, "}}]}"));
        EXPECT_NEAR(static_cast<double>(found.duration % picture), 0, 1) << rate;
        EXPECT_GE(found.duration, kPcrRate) << rate;
        EXPECT_LT(found.duration, 2 * kPcrRate) << rate;
    }
}

TEST(Multiplex, HasTextsInACodingThatKnowsThem) {
    using Text = std::pair<const char*, const char*>;  // with the standard before it
    for (const auto& [standard, text] :
         {Text{"dvb", "Plain"}, Text{"dvb", "Ação"}, Text{"dvb", "Œuvre €"}, Text{"dvb", "Канал"},
          Text{"dvb", "日本"}, Text{"isdb", "São João €"}}) {
        SCOPED_TRACE(text);
        const bool isDvb = standard == std::string("dvb");
        const Inspection found = inspectionOf(
            joined(R"({"duration":1,"standard":")", standard, R"(","networkName":")", text,
                   R"(","services":[{"video":null,"name":")", text, R"(","present":{"name":")",
                   text, R"(","duration":60,"start":"2026-11-21T20:00:00-03:00"}}]})"));
        const auto& service = found.description.services.at(0);
        EXPECT_EQ(found.description.networkName, text);
        EXPECT_EQ(service.name, text);
        EXPECT_EQ(service.present->title, text);
        EXPECT_EQ(service.present->start, 1795302000 - (isDvb ? 0 : 3 * 3600)) << "of Brasilia";
    }
}

TEST(Multiplex, TellsTheTimeByItsStandard) {
    struct Case {
        const char* standard;
        Bytes first;  ///< with the pointer before it, up to the checksum
        Bytes last;   ///< two seconds later
    };
    for (const Case& one : {Case{"dvb",
                                 {0, 0x70, 0x70, 5, 0xEF, 0xB5, 0x23, 0x59, 0x59},
                                 {0, 0x70, 0x70, 5, 0xEF, 0xB6, 0, 0, 1}},
                            Case{"isdb",
                                 {0, 0x73, 0x70, 11, 0xEF, 0xB5, 0x20, 0x59, 0x59, 0xF0, 0},
                                 {0, 0x73, 0x70, 11, 0xEF, 0xB5, 0x21, 0, 1, 0xF0, 0}}}) {
        const Bytes bytes = multiplexOf(
            std::string(R"({"startTime":"2026-11-21T20:59:59-03:00","duration":3,"standard":")") +
            one.standard + R"(","services":[{"name":"A","video":null}]})");
        std::vector<Bytes> sections;
        for (size_t at = 0; at < bytes.size(); at += TransportPacket::kSize) {
            const TransportPacket packet(&bytes[at]);
            if (packet.pid() != kTdtPid) continue;
            sections.emplace_back(packet.payload(), packet.payload() + one.first.size());
        }
        ASSERT_EQ(sections.size(), 16U);
        EXPECT_EQ(sections.front(), one.first);
        EXPECT_EQ(sections.back(), one.last);
    }
}

TEST(Multiplex, FindsTheCodingOfAnyName) {
    for (const char* const name : {"Plain", "Ação", "Œuvre €", "Канал", "日本"}) {
        const Inspection found = inspect(viewOf(multiplexOf(
            std::string(R"({"duration":1,"services":[{"video":null,"name":")") + name + "\"}]}")));
        EXPECT_EQ(found.description.services[0].name, name);
    }
}

std::vector<FrameMark> marksOf(const Bytes& video, const std::string& name) {
    std::vector<FrameMark> marks;
    test::decode(video, name, TrackKind::video, [&marks](const AVFrame& picture) {
        const auto mark =
            readMark(static_cast<uint32_t>(picture.width), static_cast<uint32_t>(picture.height),
                     test::brightnessOf(picture));
        ASSERT_TRUE(mark);
        marks.push_back(*mark);
    });
    return marks;
}

TEST(Multiplex, NumbersThePicturesAndGoesOnFromTheLastToTheFirst) {
    const Bytes bytes = twice(multiplexOf(kTwoServices));
    using Video = std::tuple<Pid, const char*, uint8_t>;
    for (const auto& [pid, file, service] :
         {Video{400, "video.h264", 257 & 0xFF}, Video{273, "video.m2v", 2}}) {
        const std::vector<FrameMark> marks = marksOf(test::contentOf(bytes, pid), file);
        ASSERT_EQ(marks.size(), 96U) << file;
        for (size_t i = 0; i < marks.size(); ++i)
            EXPECT_EQ(marks[i], (FrameMark{service, static_cast<uint16_t>(i % 48)}));
    }
}

TEST(Multiplex, SoundsWithoutAGapFromTheEndToTheBeginning) {
    const Bytes bytes = twice(multiplexOf(kTwoServices));
    using Sound = std::tuple<Pid, const char*, double>;
    for (const auto& [pid, file, tone] :
         {Sound{401, "sound.aac", 440}, Sound{274, "sound.mp2", 880}}) {
        SCOPED_TRACE(file);
        const auto samples = test::soundOf(test::contentOf(bytes, pid), file);
        ASSERT_GT(samples.size(), 2U * 92000);
        // A second about the join: a sine of one frequency and strength.
        const size_t join = 92160;
        EXPECT_NEAR(static_cast<double>(test::crossingsOf(samples, join - 24000, join + 24000)),
                    tone, 2);
        for (size_t start = join - 4800; start < join + 4800; start += 480) {
            double power = 0;
            for (size_t i = start; i < start + 480; ++i) power += samples[i] * samples[i];
            EXPECT_NEAR(std::sqrt(power / 480), 0.25 / std::sqrt(2), 0.03) << start;
        }
    }
}

uint8_t* packetAt(Bytes& bytes, size_t number) { return &bytes[number * TransportPacket::kSize]; }

/// The number of an identifier's last packet with payload.
size_t lastOf(Bytes& bytes, Pid pid) {
    size_t number = bytes.size() / TransportPacket::kSize - 1;
    for (;; --number) {
        const TransportPacket packet(packetAt(bytes, number));
        if (packet.pid() == pid && packet.hasPayload()) return number;
    }
}

void cutOut(Bytes& bytes, size_t number) {
    const auto start = bytes.begin() + static_cast<ptrdiff_t>(number * TransportPacket::kSize);
    bytes.erase(start, start + static_cast<ptrdiff_t>(TransportPacket::kSize));
}

using Damage = std::function<void(Bytes& bytes)>;

/// Makes stuffing of some packets.
Damage blanking(const std::function<bool(const TransportPacket&)>& isMeant) {
    return [isMeant](Bytes& bytes) {
        for (size_t i = 0; i < bytes.size() / TransportPacket::kSize; ++i) {
            uint8_t* const packet = packetAt(bytes, i);
            if (isMeant(TransportPacket(packet))) packet[1] = packet[2] = 0xFF;
        }
    };
}
Damage blanking(Pid pid) {
    return blanking([pid](const TransportPacket& packet) { return packet.pid() == pid; });
}

TEST(Inspection, FindsWhatIsWrongWithAFile) {
    const Bytes sound = multiplexOf(
        R"({"duration":1,"services":[{"name":"A","video":null,"audio":[{"pid":300}]}]})");
    int clocks = 0;
    const std::pair<const char*, Damage> cases[] = {
        {"there are no packets", [](Bytes& bytes) { bytes.clear(); }},
        {"there are no packets", [](Bytes& bytes) { bytes = Bytes(5000, 'x'); }},
        {"there are no services", blanking(0)},
        {"service 1: its program map is missing", blanking(256)},
        {"service 1: its clock, packet identifier 300, is missing",
         blanking([](const auto& packet) { return packet.clockReference().has_value(); })},
        {"stream with packet identifier 300 is missing", blanking(300)},
        {"packets don't follow", [](Bytes& bytes) { bytes.insert(bytes.begin() + 9400, 99, 'x'); }},
        {"packet identifier 300: its counter has gaps",
         [](Bytes& bytes) { cutOut(bytes, lastOf(bytes, 300)); }},
        {"sections with a wrong checksum: 1",
         [](Bytes& bytes) { packetAt(bytes, lastOf(bytes, kSdtPid))[30] ^= 1; }},
        {"ns off a constant rate",
         [](Bytes& bytes) {
             bytes.insert(bytes.begin() + 18800, bytes.end() - 1880, bytes.end());
         }},
        {"clock 300: 60 ms between two references",
         blanking([&](const auto& packet) { return packet.clockReference() && ++clocks == 5; })},
        {"packet identifier 300: arrives up to",
         [](Bytes& bytes) {
             // Times of decoding a second earlier.
             for (size_t i = 0; i < bytes.size() / TransportPacket::kSize; ++i) {
                 const TransportPacket packet(packetAt(bytes, i));
                 if (packet.pid() != 300 || !packet.startsUnit()) continue;
                 auto* const payload = const_cast<uint8_t*>(packet.payload());
                 payload[11] = 1;
                 payload[10] = 0;
             }
         }},
    };
    EXPECT_TRUE(inspect(viewOf(sound)).problems.empty());
    for (const auto& [problem, damage] : cases) {
        Bytes bytes = sound;
        damage(bytes);
        std::string problems;
        for (const std::string& found : inspect(viewOf(bytes)).problems) problems += found + '\n';
        EXPECT_NE(problems.find(problem), std::string::npos) << problem << "\n" << problems;
    }
}

}  // namespace
}  // namespace quiravent::desktop::lineup
