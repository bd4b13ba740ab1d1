#include <gtest/gtest.h>

#include <numeric>
#include <utility>

#include "common/TemporaryFolder.h"
#include "support/Clock.h"
#include "television/SignalFaults.h"
#include "television/TestStream.h"
#include "television/TuneRequest.h"
#include "television/TunerError.h"

namespace quiravent::desktop {
namespace {

using test::Bytes;

/// The code and reason with which a selection is refused.
std::string refusal(const std::string& selector, const std::string& lineUp) {
    try {
        parseSelection(selector, "", lineUp);
        return "none";
    } catch (const TunerError& error) {
        return std::to_string(error.code()) + ' ' + error.what();
    }
}

struct LineUpFile {
    explicit LineUpFile(const std::string& text) { test::writeBytes(path, test::bytesOf(text)); }

    TemporaryFolder folder;
    std::string path = folder / "lineup.json";
};

TEST(LineUp, GivesNamesTheirSourceAndOptions) {
    const LineUpFile lineUp(R"({"multiplexes": [
        {"name": "TV Um", "source": "um.ts", "options": {"loop": "no", "program": 7}},
        {"name": "Dois", "source": "udp://[ff15::1]:5004", "options": {"interface": "eth0"}},
        {"name": "adaptado", "source": "adapter:3",
         "options": {"system": "isdb-t", "frequency": 479142857}}]})");
    const std::string& file = lineUp.path;
    const TuneRequest one = parseSelection("TV Um", "program=8", file);
    const auto& path = std::get<FileRequest>(one.source);
    EXPECT_EQ(path.path, lineUp.folder / "um.ts");
    EXPECT_FALSE(path.loops);
    EXPECT_EQ(one.program, 8) << "what the selection says comes first";
    const auto two = std::get<NetworkRequest>(parseSelection("Dois", "", file).source);
    EXPECT_EQ(two.address, "ff15::1");
    EXPECT_EQ(two.port, 5004);
    EXPECT_EQ(two.interface, "eth0");
    const auto three = std::get<AdapterRequest>(parseSelection("adaptado", "", file).source);
    EXPECT_EQ(three.adapter, 3U);
    EXPECT_EQ(three.tuning.frequency, 479142857U);
    EXPECT_EQ(refusal("Tres", file).substr(0, 2), "8 ");
    EXPECT_EQ(std::get<FileRequest>(parseSelection("./um.ts", "", file).source).path, "./um.ts");
}

TEST(LineUp, IsRefusedWhereItIsWrong) {
    const std::pair<const char*, const char*> cases[] = {
        {"{", ": not valid JSON: "},
        {"[]", R"(: the file is []; allowed: an object with $schema, multiplexes)"},
        {R"({"services": []})", ": unknown key services of the file with the value []"},
        {"{}", ": multiplexes is null; allowed: a list of objects"},
        {R"({"multiplexes": [{"name": "A"}]})", ": source of {\"name\":\"A\"} is null"},
        {R"({"multiplexes": [{"name": "A", "source": "a", "url": 1}]})", ": unknown key url of"},
        {R"({"multiplexes": [{"name": "A", "source": "a", "options": {"x": []}}]})",
         ": x is []; allowed: a text or a whole number"},
        {R"({"multiplexes": [{"name": "A", "source": "a"}, {"name": "A", "source": "b"}]})",
         ": the name \"A\" stands twice"},
    };
    for (const auto& [text, expected] : cases) {
        const LineUpFile file(text);
        const std::string reason = refusal("A", file.path);
        EXPECT_EQ(reason.rfind("6 " + file.path + expected, 0), 0U) << reason;
    }
    EXPECT_EQ(refusal("A", "/none.json").substr(0, 2), "6 ");
}

TEST(SignalFaults, AreReadFromAText) {
    const auto troubles =
        parseSignalFaults(" lost 5-8 off; errors 10-20 1e-5 ;;delay 0.7; seed 42");
    ASSERT_TRUE(troubles);
    ASSERT_EQ(troubles->faults.size(), 2U);
    EXPECT_FALSE(troubles->faults[0].enabled);
    EXPECT_EQ(troubles->faults[1].errorRate, 1e-5);
    EXPECT_EQ(troubles->lockDelay, 700000);
    EXPECT_EQ(troubles->seed, 42U);
    for (const char* const text :
         {"lost", "lost 5", "lost 8-5", "lost 5-8 on", "errors 1-2", "errors 1-2 0.6", "delay -1",
          "delay", "seed x", "noise 1-2", "lost 1-2 off off", "delay 1 2"}) {
        EXPECT_FALSE(parseSignalFaults(text)) << text;
    }
}

TEST(SignalFaults, KeepTheSignalAwayForTheirTime) {
    SignalFaults faults(*parseSignalFaults("lost 5-8; lost 20-30 off; delay 0.5"));
    constexpr int64_t kBegin = 1000 * kSecond;
    FaultyPath path(faults, kBegin);
    const auto isOpenAt = [&](double second) {
        return path.isOpen(kBegin + static_cast<int64_t>(second * kSecond));
    };
    const std::pair<double, bool> cases[] = {{0, false},  {0.4, false}, {0.5, true},
                                             {4.9, true}, {5, false},   {7.9, false},
                                             {8, false},  {8.5, true},  {25, true}};
    for (const auto& [second, isOpen] : cases) EXPECT_EQ(isOpenAt(second), isOpen) << second;
    EXPECT_TRUE(faults.setEnabled(1, true));
    EXPECT_FALSE(isOpenAt(26));
    EXPECT_FALSE(faults.setEnabled(2, true));
}

/// Packets of zeros that came with errors.
Bytes withErrors(uint64_t seed, double rate) {
    SignalFaults faults;
    faults.setSeed(seed);
    faults.setErrorRate(rate);
    FaultyPath path(faults, 0);
    Bytes stream(2000 * TransportPacket::kSize);
    for (size_t at = 0; at < stream.size(); at += TransportPacket::kSize)
        path.damage(&stream[at], 0);
    return stream;
}

TEST(SignalFaults, PutAsManyErrorsAsAskedForAlwaysTheSame) {
    for (const double rate : {0.0, 1e-4, 0.01, 0.5}) {
        const Bytes stream = withErrors(1, rate);
        const int errors = std::accumulate(
            stream.begin(), stream.end(), 0,
            [](int count, uint8_t byte) { return count + __builtin_popcount(byte); });
        EXPECT_NEAR(errors / 8.0 / static_cast<double>(stream.size()), rate, rate / 5);
        EXPECT_EQ(stream, withErrors(1, rate));
        EXPECT_EQ(stream == withErrors(2, rate), rate == 0);
    }
}

}  // namespace
}  // namespace quiravent::desktop
