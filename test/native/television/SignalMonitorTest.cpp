#include "television/SignalMonitor.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace quiravent::desktop {
namespace {

/// What is reported of what happens at milliseconds, as codes, each with its millisecond. b:
/// reading begins; p: twenty packets; l: a lock; f: the file is missing; t: nothing but that time
/// passes.
std::string reports(const std::string& events) {
    SignalMonitor monitor;
    std::istringstream steps(events);
    std::string told;
    int64_t at = 0;
    for (char event = 0; steps >> at >> event;) {
        const int64_t now = (5000 + at) * kMillisecond;
        if (event == 'b') monitor.begin(now);
        for (int count = 0; event == 'p' && count < 20; ++count) monitor.onPacket(now);
        if (event == 'l') monitor.onLock();
        if (event == 'f') monitor.onFailure(e_pl_dtv_error_media_not_found);
        const auto outcome = monitor.check(now);
        if (outcome) told += std::to_string(*outcome) + '@' + std::to_string(at) + ' ';
    }
    return told;
}

TEST(SignalMonitor, ReportsEachChangeInItsTime) {
    const struct {
        const char* what;
        const char* events;
        const char* reports;
    } cases[] = {
        {"silence", "0b 999t 1000t 5000t", "7@1000 "},
        {"a lock", "0b 50p 50l 900p", "0@50 "},
        {"loss and return", "0b 50p 50l 1049t 1050t 3000p 3100p 3100l", "0@50 7@1050 0@3100 "},
        {"packets without tables", "0b 300p 1299p 1300p 2300t", "6@1300 7@2300 "},
        {"what can't be read stays the reason", "0b 10f 510f 1500t", "9@10 "},
        {"until it can be read", "0b 10f 600b 1599t 1600t", "9@10 7@1600 "},
        {"a source that breaks off", "0b 50p 50l 500f 1500t 1900b 1950p 1950l",
         "0@50 9@500 0@1950 "},
    };
    for (const auto& one : cases) EXPECT_EQ(reports(one.events), one.reports) << one.what;
}

}  // namespace
}  // namespace quiravent::desktop
