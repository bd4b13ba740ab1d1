#include "television/Multiplex.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "television/TestStream.h"

namespace quiravent::desktop {
namespace {

using test::Bytes;
using test::videoPacket;

constexpr Pid kVideo = 0x100;
constexpr Pid kSound = 0x101;

/// A multiplex with an H.264 stream, and a listener that writes down what it is told: packets as
/// their number, replayed ones with an r before it.
class Station : public StreamListener {
  public:
    /// What is told while the steps are done. T: it is tuned; E: that ends; L: the signal is lost;
    /// o: a packet comes for the selection before. Packets are numbered from 1 on: K begins a key
    /// picture, P another one, v goes on with a picture, s is sound, and x is a picture's beginning
    /// after a gap. V: pictures are listened to, and A: sound, too, both from a key picture on; S:
    /// sound from now on; c: it is changed to sound; u: that ends.
    std::string told(const std::string& steps) {
        m_told.clear();
        for (const char step : steps) take(step);
        return m_told;
    }

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

  private:
    void take(char step) {
        if (step == 'T') tune();
        if (step == 'E') m_multiplex.end();
        if (step == 'L') m_multiplex.setSignal(m_selection, false);
        if (step == 'V') m_subscription = m_multiplex.subscribe(*this, {{kVideo}, kVideo});
        if (step == 'A') m_subscription = m_multiplex.subscribe(*this, {{kVideo, kSound}, kVideo});
        if (step == 'S') m_subscription = m_multiplex.subscribe(*this, {{kSound}, kNullPid});
        if (step == 'c') m_subscription.setPids({kSound});
        if (step == 'u') m_subscription.reset();
        if (step == 'o') receive(m_selection - 1, 's');
        if (std::string("KPvsx").find(step) != std::string::npos) receive(m_selection, step);
    }
    void tune() {
        m_selection = m_multiplex.begin();
        auto description = std::make_shared<MultiplexDescription>();
        description->services.resize(1);
        description->services[0].streams = {{kVideo, 0x1B, StreamCodec::h264, {}, {}}};
        m_multiplex.publish(m_selection, description, true);
        m_multiplex.setSignal(m_selection, true);
    }
    void receive(uint64_t selection, char kind) {
        const bool begins = kind == 'K' || kind == 'P' || kind == 'x';
        const Bytes packet = videoPacket(kind == 's' ? kSound : kVideo, begins, kind == 'K');
        m_multiplex.receive(selection,
                            {{TransportPacket(packet.data()), ++m_number, kind == 'x', false}});
    }
    void add(const std::string& word) { m_told += (m_told.empty() ? "" : " ") + word; }

    Multiplex m_multiplex{1U << 20};
    Subscription m_subscription;
    uint64_t m_selection = 0;
    int64_t m_number = 0;
    std::string m_told;
};

TEST(Multiplex, TellsListenersWhatTheyWant) {
    using Steps = std::vector<std::pair<std::string, std::string>>;  // and what they tell
    const std::string tuned = "tuned signal";
    const Steps cases[] = {
        // Over all selections.
        {{"V", ""},
         {"T", "tuned tables:1 signal"},
         {"KsvP", "1 3 4"},
         {"c", ""},
         {"Ks", "6"},
         {"LL", "lost"},
         {"EE", "untuned"},
         {"To", "tuned tables:1 signal"},
         {"uKs", ""}},
        // From the last whole key picture on.
        {{"TA", tuned}},
        {{"TPvPvA", tuned}},
        {{"TKvA", tuned}},
        {{"TKvPvKA", tuned + " r1 r2 r3 r4 r5"}, {"S", tuned}},
        {{"TKsvPsKvsPA", tuned + " r6 r7 r8 r9"}},
        {{"TKvPvKvxvA", tuned + " r1 r2 r3 r4 r5 r6 r7! r8"}},
        // But not of what is old or of another signal.
        {{"TKvPLV", "tuned"},
         {"uTV", tuned},
         {"uKvPKvP" + std::string(20000, 's') + "V", tuned},
         {"uKvPV", tuned + " r20010 r20011 r20012"}},
    };
    for (const Steps& one : cases) {
        Station station;
        for (const auto& [steps, told] : one) {
            const std::string heard = station.told(steps);
            EXPECT_EQ(heard, told) << one.front().first << " ... " << steps.substr(0, 20);
        }
    }
}

}  // namespace
}  // namespace quiravent::desktop
