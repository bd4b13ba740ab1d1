#include "graphics/RowTeam.h"

#include <gtest/gtest.h>

#include <future>
#include <mutex>
#include <vector>

#include "common/ChildProcess.h"

namespace quiravent::desktop::test {
namespace {

constexpr uint64_t kLong = 100000;  // nanoseconds that a row is said to take

/// How often each row was worked on.
std::vector<int> visits(RowTeam& team, size_t rows, uint64_t rowTime) {
    std::vector<int> counts(rows);
    team.share(rows, rowTime, [&](size_t, size_t first, size_t last) {
        for (size_t row = first; row < last; ++row) ++counts[row];
    });
    return counts;
}

TEST(RowTeam, WorksOnEveryRowOnce) {
    for (const uint32_t threads : {1U, 2U}) {
        RowTeam team(threads, 2);
        for (int time = 0; time < 300; ++time) {
            for (const size_t rows : {0U, 1U, 2U, 3U, 97U}) {
                for (const uint64_t rowTime : {uint64_t{1}, uint64_t{500}, kLong}) {
                    ASSERT_EQ(visits(team, rows, rowTime), std::vector<int>(rows, 1));
                }
            }
        }
    }
}

TEST(RowTeam, IsHelpedAgainAndAgain) {
    RowTeam team(2, 2);
    for (int time = 0; time < 20; ++time) {
        std::promise<void> helped;
        std::once_flag once;
        std::future<void> help = helped.get_future();
        team.share(64, kLong, [&](size_t worker, size_t, size_t) {
            if (worker == 1) {
                std::call_once(once, [&] { helped.set_value(); });
            } else if (help.valid()) {
                help.get();
            }
        });
    }
}

TEST(RowTeam, IsAloneWhereThereIsNoOtherProcessorOrThreadAndOnceStopped) {
    RowTeam small(2, 1);
    RowTeam told(1, 2);
    RowTeam stopped(2, 2);
    stopped.stop();
    stopped.stop();
    for (RowTeam* team : {&small, &told, &stopped})
        team->share(64, kLong, [](size_t worker, size_t, size_t) { EXPECT_EQ(worker, 0U); });
}

TEST(RowTeam, IsAloneInAForkedProcess) {
    RowTeam team(2, 2);
    visits(team, 64, kLong);
    const ChildOutcome outcome = runInChild({}, [&] {
        EXPECT_EQ(visits(team, 64, kLong), std::vector<int>(64, 1));
        team.stop();
    });
    EXPECT_EQ(outcome.status, 0);
}

}  // namespace
}  // namespace quiravent::desktop::test
