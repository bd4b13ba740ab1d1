#include "television/SignalMonitor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quiravent::desktop {
namespace {

enum Event { begins, packets, lock, fails, time };

/// What happens at a millisecond. `packets`: twenty of them; `fails`: the file is missing; `time`:
/// nothing but that it passes.
struct Step {
    int64_t at;
    Event event;
};

/// What is reported, as codes, each with its millisecond.
std::string reports(const std::vector<Step>& steps) {
    SignalMonitor monitor;
    std::string told;
    for (const Step& step : steps) {
        const int64_t now = (5000 + step.at) * kMillisecond;
        if (step.event == begins) monitor.begin(now);
        for (int count = 0; step.event == packets && count < 20; ++count) monitor.onPacket(now);
        if (step.event == lock) monitor.onLock();
        if (step.event == fails) monitor.onFailure(e_pl_dtv_error_media_not_found);
        const auto outcome = monitor.check(now);
        if (outcome) told += std::to_string(*outcome) + '@' + std::to_string(step.at) + ' ';
    }
    return told;
}

TEST(SignalMonitor, ReportsEachChangeInItsTime) {
    struct Case {
        const char* what;
        std::vector<Step> steps;
        const char* reports;
    };
    const Case cases[] = {
        {"silence", {{0, begins}, {999, time}, {1000, time}, {5000, time}}, "7@1000 "},
        {"a lock", {{0, begins}, {50, packets}, {50, lock}, {900, packets}}, "0@50 "},
        {"loss and return",
         {{0, begins},
          {50, packets},
          {50, lock},
          {1049, time},
          {1050, time},
          {3000, packets},
          {3100, packets},
          {3100, lock}},
         "0@50 7@1050 0@3100 "},
        {"packets without tables",
         {{0, begins}, {300, packets}, {1299, packets}, {1300, packets}, {2300, time}},
         "6@1300 7@2300 "},
        {"what can't be read stays the reason",
         {{0, begins}, {10, fails}, {510, fails}, {1500, time}},
         "9@10 "},
        {"until it can be read",
         {{0, begins}, {10, fails}, {600, begins}, {1599, time}, {1600, time}},
         "9@10 7@1600 "},
        {"a source that breaks off",
         {{0, begins},
          {50, packets},
          {50, lock},
          {500, fails},
          {1500, time},
          {1900, begins},
          {1950, packets},
          {1950, lock}},
         "0@50 9@500 0@1950 "},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        EXPECT_EQ(reports(one.steps), one.reports);
    }
}

}  // namespace
}  // namespace quiravent::desktop
