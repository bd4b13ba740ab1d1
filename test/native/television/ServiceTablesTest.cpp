#include "television/ServiceTables.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "common/MalformedInput.h"
#include "support/Text.h"
#include "television/ContinuityCheck.h"
#include "television/TestStream.h"

namespace quiravent::desktop {
namespace {

using test::Bytes;
using test::bytesOf;
using test::counted;
using test::countedLong;
using test::descriptor;
using test::section;
using test::word;
using test::operator+;
using Change = ServiceTables::Change;

/// Reads the tables of packets as a receiver does.
class Reader {
  public:
    Change add(const Bytes& packets) {
        Change change = Change::none;
        for (size_t at = 0; at + TransportPacket::kSize <= packets.size();
             at += TransportPacket::kSize) {
            const TransportPacket packet(&packets[at]);
            const auto verdict = m_continuity.check(packet);
            change = std::max(change, tables.add(packet, verdict == ContinuityCheck::Verdict::gap));
        }
        return change;
    }
    Change add(Pid pid, const Bytes& section) { return add(m_packetizer.packets(pid, section)); }
    MultiplexDescription describe() const { return tables.describe(); }

    ServiceTables tables;

  private:
    ContinuityCheck m_continuity;
    test::Packetizer m_packetizer;
};

constexpr Pid kMapPid = 0x100;
constexpr uint16_t kNumber = 7;

Bytes association(uint8_t version, uint16_t number = kNumber, Pid pid = kMapPid) {
    return section({0x00, 1, version}, word(number) + word(0xE000U | pid));
}

Bytes stream(uint8_t type, Pid pid, const Bytes& descriptors = {}) {
    return Bytes{type} + word(0xE000U | pid) + countedLong(descriptors);
}

Bytes programMap(const Bytes& streams, uint8_t version = 0) {
    return section({0x02, kNumber, version}, word(0xE200) + countedLong({}) + streams);
}

Bytes serviceName(const std::string& name, uint16_t network) {
    const Bytes texts = counted(bytesOf("Sender")) + counted(bytesOf(name));
    return section({0x42, 1, 0}, word(network) + Bytes{0xFF} + word(kNumber) + Bytes{0xFC} +
                                     countedLong(descriptor(0x48, Bytes{1} + texts)));
}

Bytes network(uint8_t delivery, uint16_t id) {
    const Bytes streams = word(1) + word(id) + countedLong(descriptor(delivery, Bytes(4)));
    return section({0x40, 9}, countedLong(descriptor(0x40, bytesOf("Net"))) + countedLong(streams));
}

Bytes event(uint8_t number, const std::string& title, uint8_t version = 0) {
    // 13 October 1993, 12:45:00, for an hour and a half, as the standard's example has it.
    const Bytes times{0xC0, 0x79, 0x12, 0x45, 0x00, 0x01, 0x30, 0x00};
    const Bytes texts = bytesOf("por") + counted(bytesOf(title)) + counted(bytesOf("Text"));
    return section({0x4E, kNumber, version, number, 1}, Bytes{0, 1, 0, 1, 1, 0x4E} +
                                                            word(40U + number) + times +
                                                            countedLong(descriptor(0x4D, texts)));
}

/// As "PID CODEC LANGUAGE" of each stream.
std::string told(const Service& service) {
    std::string text;
    for (const ElementaryStream& stream : service.streams)
        text += joined(stream.pid, ' ', nameOf(stream.codec), ' ', stream.language, ';');
    return text;
}

TEST(ServiceTables, TellStreamsByTypeAndDescriptors) {
    const std::tuple<uint8_t, Bytes, const char*> cases[] = {
        {0x24, {}, "HEVC "},
        {0x11, descriptor(0x0A, bytesOf("ENG") + Bytes{0}), "AAC LATM eng"},
        {0x11, descriptor(0xC4, Bytes(6) + bytesOf("jpn")), "AAC LATM jpn"},
        {0x06, descriptor(0x6A, {0}), "AC-3 "},
        {0x06, descriptor(0x52, {1}) + descriptor(0x05, bytesOf("AC-3")), "AC-3 "},
        {0x06, descriptor(0x59, bytesOf("deu") + Bytes{0x10, 0, 1, 0, 1}), "DVB subtitles deu"},
        {0x06, descriptor(0x56, bytesOf("fra") + Bytes{9, 0}), "teletext fra"},
        {0x06, descriptor(0xFD, {0, 8, 0x3D}), "ISDB captions "},
        {0x06, descriptor(0x0A, {0, 1, 2, 3}), "other "},
        {0x06, {0x6A}, "AC-3 "},
        {0x05, {}, "other "},
    };
    for (const auto& [type, descriptors, expected] : cases) {
        Reader reader;
        reader.add(kPatPid, association(0));
        const Bytes streams = stream(type, 0x201, descriptors) + stream(0x1B, 0x202);
        EXPECT_EQ(reader.add(kMapPid, programMap(streams)), Change::association);
        const Service service = reader.describe().services.at(0);
        EXPECT_EQ(service.pcrPid, 0x200);
        EXPECT_EQ(told(service), joined("513 ", expected, ";514 H.264 ;"));
        EXPECT_EQ(service.streams[0].descriptors, descriptors);
    }
}

TEST(ServiceTables, TellWhatIsOnAndWhatIsNext) {
    Reader reader;
    reader.add(kPatPid, association(0));
    EXPECT_EQ(reader.add(kEitPid, event(0, "Now")), Change::details);
    EXPECT_EQ(reader.add(kEitPid, event(1, "Then")), Change::details);
    EXPECT_EQ(reader.add(kEitPid, event(1, "Then")), Change::none);
    Service service = reader.describe().services.at(0);
    ASSERT_TRUE(service.present && service.following);
    const ServiceEvent& on = *service.present;
    EXPECT_EQ(joined(on.id, ' ', on.start, ' ', on.duration, ' ', on.language, ' ', on.title, ' ',
                     on.text),
              "40 750516300 5400 por Now Text");
    EXPECT_EQ(service.following->title, "Then");
    reader.add(kEitPid, event(0, "Later", 1));
    service = reader.describe().services.at(0);
    EXPECT_EQ(service.present->title, "Later");
    EXPECT_FALSE(service.following);
}

TEST(ServiceTables, ChooseTheCodingOfTextsByTheNetwork) {
    using Case = std::tuple<uint8_t, uint16_t, const char*>;
    for (const auto& [delivery, id, name] :
         {Case{0x5A, 1, "ä"}, Case{0xFA, 0x5A0, "Èa"}, Case{0xFA, 0x7FE0, "と\uFFFD"}}) {
        Reader reader;
        reader.add(kPatPid, association(0));
        reader.add(kSdtPid, serviceName("\xC8\x61", id));
        reader.add(kNitPid, network(delivery, id));
        EXPECT_EQ(reader.describe().networkId, 9);
        EXPECT_EQ(reader.describe().services.at(0).name, name);
    }
}

TEST(ServiceTables, FollowNewVersions) {
    Reader reader;
    reader.add(kPatPid, association(0));
    reader.add(kMapPid, programMap(stream(0x1B, 0x201)));
    EXPECT_TRUE(reader.tables.hasMapOf(kNumber));
    EXPECT_EQ(reader.add(kMapPid, programMap(stream(0x1B, 0x201))), Change::none);
    EXPECT_EQ(reader.add(kMapPid, programMap(stream(0x02, 0x301), 1)), Change::association);
    EXPECT_EQ(reader.describe().findStream(0x201), nullptr);
    EXPECT_EQ(reader.add(kPatPid, association(1, 9, 0x110)), Change::association);
    EXPECT_FALSE(reader.tables.hasProgram(kNumber));
    EXPECT_FALSE(reader.tables.isLocked());
    EXPECT_EQ(reader.add(kMapPid, programMap(stream(0x1B, 0x201))), Change::none)
        << "of a program that has gone";
    EXPECT_EQ(reader.add(kPatPid, section({0x00, 1, 2}, {})), Change::association);
    EXPECT_TRUE(reader.tables.isLocked()) << "a multiplex without programs";
}

TEST(ServiceTables, SpanPacketsAndLeaveOutWhatIsDamaged) {
    Bytes streams;
    for (Pid pid = 0x201; pid < 0x241; ++pid) streams = streams + stream(0x1B, pid);
    test::Packetizer packetizer;
    const Bytes map = packetizer.packets(kMapPid, programMap(streams));
    Reader reader;
    reader.add(kPatPid, association(0));
    ASSERT_EQ(map.size(), 2 * TransportPacket::kSize);
    Bytes damaged = map;
    damaged[300] ^= 1;
    EXPECT_EQ(reader.add(damaged), Change::none);
    EXPECT_EQ(reader.tables.faultySections(), 1U);
    reader.add(Bytes(map.begin(), map.begin() + TransportPacket::kSize));
    EXPECT_EQ(reader.add(packetizer.packets(kMapPid, programMap(stream(0x1B, 0x999), 1))),
              Change::association)
        << "the beginning of one section isn't completed by another";
    EXPECT_EQ(reader.describe().services.at(0).streams.size(), 1U);
    EXPECT_EQ(reader.add(packetizer.packets(kMapPid, programMap(streams, 2))), Change::association);
    EXPECT_EQ(reader.describe().services.at(0).streams.size(), 64U);
}

/// Whatever the tables say, reading them is safe; sections have right checksums, so that what is in
/// them is looked at.
TEST(ServiceTables, SurviveMalformedContent) {
    const Bytes subtitles = descriptor(0x59, bytesOf("deu") + Bytes(5));
    const std::pair<Pid, Bytes> tables[] = {{kPatPid, association(0)},
                                            {kMapPid, programMap(stream(0x06, 0x201, subtitles))},
                                            {kSdtPid, serviceName("abc", 1)},
                                            {kNitPid, network(0x5A, 1)},
                                            {kEitPid, event(0, "Title")}};
    for (const auto& [tablePid, whole] : tables) {
        const Pid pid = tablePid;
        const uint8_t id = whole[0];
        SCOPED_TRACE(id);
        const auto extension = static_cast<uint16_t>(whole[3] << 8 | whole[4]);
        const Bytes body(whole.begin() + 8, whole.end() - 4);
        Reader reader;
        uint8_t version = 0;
        const auto add = [&](const Bytes& content) {
            reader.add(kPatPid, association(version));
            version = (version + 1) & 31;
            reader.add(pid, section({id, extension, version}, content));
            (void)reader.describe();
        };
        for (const Bytes& content : test::truncations(body, body.size())) add(content);
        for (const Bytes& content : test::byteFlips(body, 500, body.size())) add(content);
        EXPECT_EQ(reader.tables.faultySections(), 0U);
    }
    Bytes mux = test::readMultiplex("mux.ts");
    mux.resize(40000);
    for (const Bytes& damaged : test::byteFlips(mux, 100, mux.size())) Reader().add(damaged);
}

}  // namespace
}  // namespace quiravent::desktop
