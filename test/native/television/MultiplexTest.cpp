#include "television/Multiplex.h"

#include <gtest/gtest.h>

#include <string>

#include "television/TestStream.h"

namespace quiravent::desktop {
namespace {

using test::Bytes;
using test::videoPacket;

constexpr Pid kVideo = 0x100;
constexpr Pid kSound = 0x101;

/// Writes down what it is told: packets as their number, replayed ones with an r before it.
class Listener : public StreamListener {
  public:
    explicit Listener(const Multiplex& multiplex) : m_multiplex(multiplex) {}

    void onTuned() override { add("tuned"); }
    void onUntuned() override { add("untuned"); }
    void onPacket(const StreamPacket& packet) override {
        add((packet.isReplayed ? "r" : "") + std::to_string(packet.arrival) +
            (packet.isDiscontinuous ? "!" : ""));
    }
    void onTablesChanged() override {
        add("tables:" + std::to_string(m_multiplex.description()->services.size()));
    }
    void onSignal(bool isPresent) override { add(isPresent ? "signal" : "lost"); }

    /// What has been written down since the last time.
    std::string told() { return std::exchange(m_told, {}); }

  private:
    void add(const std::string& word) { m_told += (m_told.empty() ? "" : " ") + word; }

    const Multiplex& m_multiplex;
    std::string m_told;
};

/// A multiplex with an H.264 stream, to which packets come one after the other.
class Station {
  public:
    Station() { tune(); }

    void tune() {
        m_selection = multiplex.begin();
        auto description = std::make_shared<MultiplexDescription>();
        description->services.resize(1);
        description->services[0].streams = {{kVideo, 0x1B, StreamCodec::h264, {}, {}}};
        multiplex.publish(m_selection, description, true);
        multiplex.setSignal(m_selection, true);
    }
    void lose() { multiplex.setSignal(m_selection, false); }
    /// Packets numbered from 1 on: K begins a key picture, P another one, v goes on with a picture,
    /// s is sound, and x is a picture's beginning after a gap.
    void receive(const std::string& kinds) {
        for (const char kind : kinds) {
            const bool begins = kind == 'K' || kind == 'P' || kind == 'x';
            const Bytes packet = kind == 's' ? videoPacket(kSound, false, false)
                                             : videoPacket(kVideo, begins, kind == 'K');
            multiplex.receive(m_selection,
                              {{TransportPacket(packet.data()), ++m_number, kind == 'x', false}});
        }
    }
    void receiveLate(uint64_t selection) {
        const Bytes packet = videoPacket(kSound, false, false);
        multiplex.receive(selection, {{TransportPacket(packet.data()), 99, false, false}});
    }
    uint64_t selection() const { return m_selection; }

    Multiplex multiplex{1U << 20};

  private:
    uint64_t m_selection = 0;
    int64_t m_number = 0;
};

TEST(Multiplex, TellsWhatIsWantedOverAllSelections) {
    Station station;
    station.multiplex.end();
    Listener listener(station.multiplex);
    Subscription subscription = station.multiplex.subscribe(listener, {{kVideo, kNullPid}, {}});
    EXPECT_EQ(listener.told(), "");
    station.tune();
    EXPECT_EQ(listener.told(), "tuned tables:1 signal");
    station.receive("KsvP");
    EXPECT_EQ(listener.told(), "1 3 4");
    subscription.setPids({kSound});
    station.receive("Ks");
    EXPECT_EQ(listener.told(), "6");
    station.lose();
    station.lose();
    EXPECT_EQ(listener.told(), "lost");
    const uint64_t before = station.selection();
    station.multiplex.end();
    station.multiplex.end();
    EXPECT_EQ(listener.told(), "untuned");
    EXPECT_EQ(station.multiplex.description(), nullptr);
    station.tune();
    station.receiveLate(before);
    EXPECT_EQ(listener.told(), "tuned tables:1 signal");
    subscription.reset();
    station.receive("Ks");
    EXPECT_EQ(listener.told(), "");
}

TEST(Multiplex, BeginsWithTheLastWholeKeyPicture) {
    struct Case {
        const char* received;
        const char* told;
    };
    const Case cases[] = {
        {"", ""},
        {"PvPv", ""},
        {"Kv", ""},
        {"KvPvK", " r1 r2 r3 r4 r5"},
        {"KsvPsKvsP", " r6 r7 r8 r9"},
        {"KvPvKvxv", " r1 r2 r3 r4 r5 r6 r7! r8"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.received);
        Station station;
        station.receive(one.received);
        Listener listener(station.multiplex);
        const auto subscription = station.multiplex.subscribe(listener, {{kVideo, kSound}, kVideo});
        EXPECT_EQ(listener.told(), std::string("tuned signal") + one.told);
        Listener other(station.multiplex);
        const auto unwanted = station.multiplex.subscribe(other, {{kSound}, kNullPid});
        EXPECT_EQ(other.told(), "tuned signal");
    }
}

TEST(Multiplex, ForgetsWhatIsOldOrOfAnotherSignal) {
    Station station;
    Listener listener(station.multiplex);
    const auto told = [&] {
        const auto subscription = station.multiplex.subscribe(listener, {{kVideo}, kVideo});
        return listener.told();
    };
    station.receive("KvP");
    station.lose();
    EXPECT_EQ(told(), "tuned");
    station.tune();
    EXPECT_EQ(told(), "tuned signal");
    station.receive("KvPKvP" + std::string(20000, 's'));
    EXPECT_EQ(told(), "tuned signal");
    station.receive("KvP");
    EXPECT_EQ(told(), "tuned signal r20010 r20011 r20012");
}

}  // namespace
}  // namespace quiravent::desktop
