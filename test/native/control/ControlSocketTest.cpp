#include "control/ControlSocket.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "common/ChildProcess.h"
#include "common/TemporaryFolder.h"
#include "common/errorOf.h"
#include "control/Station.h"
#include "support/Text.h"

namespace quiravent::desktop {
namespace {

mode_t modeOf(const std::string& path) {
    struct stat about = {};
    return lstat(path.c_str(), &about) == 0 ? about.st_mode & 07777 : 0;
}

std::string errorOf(const std::string& path) {
    return test::errorOf([&] { const ControlSocket socket(path); });
}

TEST(ControlSocket, IsForItsUserAloneWhateverTheMask) {
    const TemporaryFolder folder;
    for (const mode_t mask : {0000, 0022, 0777}) {
        const mode_t before = umask(mask);
        const ControlSocket socket(folder / "control");
        umask(before);
        EXPECT_EQ(modeOf(folder / "control"), 0600U);
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "control"));
}

/// What a client is told at once; of another user where this one may become one.
std::string toldToAnotherUser(const std::string& path) {
    constexpr uid_t kNobody = 65534;
    const ChildOutcome outcome = runInChild({}, [&] {
        if (getuid() == 0 && setuid(kNobody) != 0) _exit(1);
        std::string line = "can't connect";
        try {
            line = Client(path).ask(R"({"command":"frame"})");
        } catch (const std::runtime_error&) {
        }
        std::fputs(line.c_str(), stderr);
        std::fflush(stderr);
        _exit(0);
    });
    EXPECT_EQ(outcome.status, 0);
    return outcome.errors;
}

TEST(ControlSocket, TurnsOtherUsersAwayWhateverItsMode) {
    const Station station;
    const std::string path = station.socketPath();
    chmod(std::filesystem::path(path).parent_path().c_str(), 0755);
    const std::string served = R"({"ok":true,"frame":0})";
    const bool canBeAnother = getuid() == 0;
    EXPECT_EQ(toldToAnotherUser(path), canBeAnother ? "can't connect" : served);
    // Even if somebody opens the file for all.
    chmod(path.c_str(), 0666);
    EXPECT_EQ(
        toldToAnotherUser(path),
        canBeAnother ? R"({"ok":false,"error":"the device belongs to another user"})" : served);
    EXPECT_EQ(station.client().ask(R"({"command":"frame"})"), served);
}

TEST(ControlSocket, TakesThePlaceOfOneThatNobodyListensOnAndLeavesAFileInItsOwn) {
    const TemporaryFolder folder;
    const std::string path = folder / "control";
    std::optional<ControlSocket> first(path);
    EXPECT_EQ(errorOf(path), "the control channel can't be at " + path +
                                 ": another process listens there; choose another path");
    // As after the death of a process: the name stays.
    std::filesystem::create_hard_link(path, folder / "kept");
    first.reset();
    std::filesystem::rename(folder / "kept", path);
    first.emplace(path);
    std::filesystem::remove(path);
    std::ofstream(path) << "text";
    first.reset();
    EXPECT_TRUE(std::filesystem::exists(path));
}

TEST(ControlSocket, SaysWhyItCantBe) {
    const TemporaryFolder folder;
    std::ofstream(folder / "file") << "text";
    const std::string longPath = folder / std::string(100, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {folder / "file", ": that is no socket; remove it, or choose another path"},
        {folder / "none/control", ": it can't be made: No such file or directory"},
        {longPath, joined(": its path has ", longPath.size(), " bytes; allowed: at most 107")},
    };
    for (const auto& [path, reason] : cases)
        EXPECT_EQ(errorOf(path), joined("the control channel can't be at ", path, reason));
    EXPECT_TRUE(std::filesystem::exists(folder / "file"));
}

TEST(ControlSocket, IsGoneWithItsServerAndClosesItsClients) {
    Station station;
    Client client = station.client();
    EXPECT_EQ(client.ask(R"({"command":"frame"})"), R"({"ok":true,"frame":0})");
    client.send("{\"command\":\"waitFlush\",\"timeout\":600000}\n");
    station.server().stop();
    EXPECT_EQ(client.line(), "");
    EXPECT_FALSE(std::filesystem::exists(station.socketPath()));
}

}  // namespace
}  // namespace quiravent::desktop
