// The tuner over real transport streams: what it reports, and when it stops.

#include "television/Tuner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <future>

#include "common/TemporaryFolder.h"
#include "common/errorOf.h"
#include "support/Text.h"
#include "television/NetworkSource.h"
#include "television/TestTuner.h"

namespace quiravent::desktop {
namespace {

using test::Bytes;
using test::multiplexFile;
using test::Sender;
using test::TestTuner;
using test::waitUntil;
using test::operator+;
using Codes = std::vector<int>;

TEST(Tuner, TellsWhatThereIsAndWhatIsWrongWithTheSignal) {
    Configuration::Television configuration;
    configuration.faults = "delay 0.2; lost 1000-2000";
    TestTuner tuner(configuration);
    EXPECT_FALSE(tuner->status().isSelected);
    tuner.select(multiplexFile("mux.ts"));
    EXPECT_EQ(tuner.waitForReports(1), Codes{0});
    const auto received = [&] { return tuner->status().receiver->statistics; };
    EXPECT_TRUE(waitUntil([&] { return received().bitRate > 0; }));
    const SignalStatistics statistics = received();
    EXPECT_NEAR(statistics.bitRate, 3000000, 400000);
    EXPECT_EQ(statistics.continuityErrors, 0U);
    EXPECT_GT(statistics.pids[256].packets, 0U);
    EXPECT_EQ(tuner->multiplex().description()->services.at(1).name, "Deux");
    tuner->faults().setLost(true);
    EXPECT_EQ(tuner.waitForReports(2), (Codes{0, 7}));
    EXPECT_EQ(received().bitRate, 0);
    tuner->faults().setLost(false);
    EXPECT_EQ(tuner.waitForReports(3), (Codes{0, 7, 0}));
    EXPECT_EQ(received().continuityErrors, 0U)
        << "what a loss leaves out isn't missing from a signal";
    tuner->faults().setErrorRate(1e-4);
    EXPECT_TRUE(waitUntil([&] { return received().continuityErrors > 10; }));
    EXPECT_TRUE(waitUntil([&] { return received().damagedPackets > 0; }));
    tuner->faults().setErrorRate(0.02);
    const uint64_t packets = received().packets;
    EXPECT_TRUE(waitUntil([&] { return received().packets > packets + 100; }));
    tuner->unselect();
    EXPECT_FALSE(tuner->status().isSelected);
    EXPECT_EQ(tuner->multiplex().description(), nullptr);
}

TEST(Tuner, TellsEachOutcomeByItsCode) {
    const uint16_t taken = test::freePort();
    NetworkSource other({"127.0.0.1", taken, "", ""});
    other.open();
    const TemporaryFolder folder;
    Bytes tableless;
    for (int number = 0; number < 300; ++number)
        tableless = tableless + test::clockPacket(0x100, 0);
    test::writeBytes(folder / "tableless.ts", tableless);
    struct Case {
        std::string selector;
        std::string option;
        int code;
        const char* failure;  ///< part of the line for people
    };
    const std::string mux = multiplexFile("mux.ts");
    const Case cases[] = {
        {mux, "undefined", 0, ""},
        {"file://" + mux, "", 0, ""},
        {multiplexFile("stamped.m2ts"), "loop=no", 0, ""},
        {mux, "program=2; LOOP=yes", 0, ""},
        {mux, "program=9", 8, ""},
        {multiplexFile("garbage.ts"), "bitrate=50000000", 7, ""},
        {multiplexFile("missing.ts"), "", 9, "No such file"},
        {multiplexFile("empty.ts"), "", 6, "0 bytes"},
        {folder / "tableless.ts", "bitrate=1000000", 6, ""},
        {multiplexFile("."), "", 4, "no regular file"},
        {"", "", 5, "the selector is empty"},
        {"name", "", 8, "'name' is not in the line-up"},
        {"http://host/a.ts", "", 4, "can't be a source"},
        {"sat://host", "", 5, "scheme"},
        {mux, "program", 5, "'program' isn't as NAME=VALUE"},
        {mux, "program=70000", 5, "program is '70000'; allowed: a whole number from 1 to 65535"},
        {mux, "interface=lo", 5,
         "unknown option 'interface'; allowed here: loop, bitrate, program"},
        {mux, "loop=maybe", 5, "loop is 'maybe'; allowed: no, yes"},
        {"udp://127.0.0.1", "", 5, "has no port"},
        {"udp://host.example:5000", "", 5, "is no address"},
        {"udp://239.255.0.9:5000?interface=none0", "", 5, "no network interface 'none0'"},
        {joined("udp://127.0.0.1:", taken), "", 1, "in use"},
        {joined("udp://127.0.0.1:", test::freePort()), "", 7, ""},
        {"adapter:x", "", 5, "is no adapter"},
        {"adapter:0", "", 5, "needs the options system and frequency"},
        {"adapter:251", "system=isdb-t frequency=479142857", 65535, "adapter251"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.selector + " " + one.option);
        TestTuner tuner;
        tuner.select(one.selector, one.option);
        EXPECT_EQ(tuner.waitForReports(1), Codes{one.code});
        const TunerStatus status = tuner->status();
        EXPECT_EQ(status.outcome, static_cast<e_pl_dtv_error>(one.code));
        EXPECT_NE(status.failure.find(one.failure), std::string::npos) << status.failure;
        EXPECT_EQ(status.failure.empty(), std::string(one.failure).empty()) << status.failure;
    }
}

TEST(Tuner, FindsAFileThatComesLater) {
    const TemporaryFolder folder;
    TestTuner tuner;
    tuner.select(folder / "later.ts");
    EXPECT_EQ(tuner.waitForReports(1), Codes{9});
    std::filesystem::copy_file(multiplexFile("mux.ts"), folder / "later.ts");
    EXPECT_EQ(tuner.waitForReports(2), (Codes{9, 0}));
}

TEST(Tuner, FollowsLossAndReturnOfDatagrams) {
    // Version 2, with one contributing source, an extension of a word, and the type of streams.
    const Bytes rtp = Bytes{0x91, 33} + Bytes(14) + Bytes{0xBE, 0xDE, 0, 1, 1, 2, 3, 4};
    struct Case {
        const char* selector;
        const char* address;
        Bytes header;
        int returns;
    };
    Bytes stream = test::readMultiplex("mux.ts");
    stream.resize(60000);
    for (const Case& one : {Case{"udp://localhost", "127.0.0.1", {}, 1},
                            Case{"rtp://@127.0.0.1", "127.0.0.1", rtp, 0},
                            Case{"udp://239.255.77.5", "239.255.77.5", {}, 0}}) {
        SCOPED_TRACE(one.selector);
        const uint16_t port = test::freePort();
        TestTuner tuner;
        const auto isLast = [&](int code) {
            return !tuner.reports().empty() && tuner.reports().back() == code;
        };
        tuner.select(joined(one.selector, ':', port, '/'),
                     one.address[0] == '2' ? "interface=lo" : "");
        const Sender sender(one.address, port);
        // On a busy machine the sender may be away for so long that the signal is lost.
        for (int round = 0; round <= one.returns; ++round) {
            for (int tries = 0; tries < 200 && !isLast(0); ++tries)
                sender.sendStream(stream, one.header);
            EXPECT_TRUE(isLast(0));
            EXPECT_TRUE(waitUntil([&] { return isLast(7); }));
        }
        const Codes reports = tuner.reports();
        EXPECT_EQ(std::adjacent_find(reports.begin(), reports.end()), reports.end())
            << "only changes are reported";
    }
}

TEST(Tuner, SelectsAnewWhatItHasItself) {
    const uint16_t port = test::freePort();
    const std::string selector = joined("udp://127.0.0.1:", port);
    TestTuner tuner;
    tuner.select(selector);
    EXPECT_TRUE(waitUntil([&] {
        const auto open = [&] { NetworkSource({"127.0.0.1", port, "", ""}).open(); };
        return test::errorOf(open) != "none";
    }));
    tuner.select(selector);
    EXPECT_EQ(tuner.waitForReports(1), Codes{7}) << "and not that the port is taken";
}

TEST(Tuner, ReportsNothingOfASelectionThatHasEnded) {
    TestTuner tuner;
    for (int round = 0; round < 20; ++round) {
        tuner.select(multiplexFile("mux.ts"));
        tuner->unselect();
    }
    tuner->unselect();
    const size_t before = tuner.reports().size();
    tuner.select(multiplexFile("missing.ts"));
    EXPECT_EQ(tuner.waitForReports(before + 1).back(), 9);
    EXPECT_EQ(tuner.reports().size(), before + 1);
    tuner.select(multiplexFile("mux.ts"));
    tuner.select(multiplexFile("other.ts"));
    EXPECT_TRUE(waitUntil([&] { return tuner.reports().back() == 0; }));
    EXPECT_TRUE(
        waitUntil([&] { return tuner->multiplex().description()->transportStreamId == 78; }));
}

TEST(Tuner, UnselectingWaitsForTheReportUnderWay) {
    TestTuner tuner;
    std::promise<void> begun;
    std::promise<void> mayEnd;
    std::atomic<bool> hasEnded{false};
    tuner.onReport([&](int) {
        begun.set_value();
        mayEnd.get_future().wait();
        hasEnded = true;
    });
    tuner.select(multiplexFile("mux.ts"));
    begun.get_future().wait();
    auto unselecting = std::async(std::launch::async, [&] {
        tuner->unselect();
        return hasEnded.load();
    });
    EXPECT_TRUE(waitUntil([&] { return !tuner->status().isSelected; }));
    mayEnd.set_value();
    EXPECT_TRUE(unselecting.get());
}

TEST(Tuner, MayBeUnselectedByItsReport) {
    TestTuner tuner;
    tuner.onReport([&](int) { tuner->unselect(); });
    tuner.select(multiplexFile("mux.ts"));
    EXPECT_EQ(tuner.waitForReports(1), Codes{0});
    EXPECT_TRUE(waitUntil([&] { return !tuner->status().isSelected; }));
}

}  // namespace
}  // namespace quiravent::desktop
