#include "persistence/ValueStore.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "common/ChildProcess.h"
#include "common/TemporaryFolder.h"
#include "common/countFromEnvironment.h"
#include "persistence/Persistence.h"
#include "support/DeviceError.h"

namespace quiravent::desktop {
namespace {

namespace fs = std::filesystem;

std::string openingError(const std::string& folder) {
    try {
        const ValueStore store(folder, Durability::process);
        return {};
    } catch (const DeviceError& error) {
        EXPECT_EQ(error.status(), e_pl_status_io_error);
        return error.what();
    }
}

void execute(const std::string& file, const char* sql) {
    sqlite3* connection = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &connection), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(connection, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
    sqlite3_close(connection);
}

void setOneValue(const std::string& folder) {
    ValueStore(folder, Durability::process).set("c", "k", "v");
}

int waitFor(pid_t child) {
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

TEST(ValueStore, KeepsAnyBytesAcrossOpenings) {
    const std::vector<std::string> texts{
        "", "a", {"a\0b", 3}, "\xff\xfe", "null", "\xc3\xa9", std::string(3000000, 'x')};
    const TemporaryFolder folder;
    for (const std::string& context : texts) {
        ValueStore store(folder / "a/b", Durability::machine);
        for (const std::string& key : texts) store.set(context, key, context + key);
    }
    ValueStore store(folder / "a/b", Durability::process);
    for (const std::string& context : texts) {
        for (const std::string& key : texts) ASSERT_EQ(store.get(context, key), context + key);
        EXPECT_EQ(store.getAll(context).size(), texts.size());
    }
    EXPECT_EQ(store.get("a", "missing"), std::nullopt);
    EXPECT_TRUE(store.getAll("missing").empty());
    store.set("a", "a", "");
    EXPECT_EQ(store.get("a", "a"), "") << "a later value replaces the earlier";
    EXPECT_EQ(store.getAll("a").size(), texts.size());
}

TEST(ValueStore, FilesAreTheUsersOwn) {
    const TemporaryFolder folder;
    ValueStore store(folder / "new", Durability::process);
    store.set("c", "k", "v");
    const std::pair<const char*, mode_t> modes[] = {
        {"new", 0700}, {"new/values.sqlite", 0600}, {"new/values.sqlite-wal", 0600}};
    for (const auto& [name, mode] : modes) {
        struct stat status {};
        ASSERT_EQ(stat((folder / name).c_str(), &status), 0) << name;
        EXPECT_EQ(status.st_mode & 0777U, mode) << name;
    }
}

/// Something that is no usable store, in a place of its own.
struct Unusable {
    void (*prepare)(const fs::path& folder, const fs::path& file);
    const char* reason;  ///< behind the folder's name
};
using Path = const fs::path&;
const Unusable kUnusable[] = {
    {[](Path, Path file) { std::ofstream(file) << std::string(5000, 'x'); },
     "/values.sqlite: file is not a database; move the file away to start with an empty one"},
    {[](Path, Path file) {
         execute(file, "PRAGMA application_id=0x51727674; PRAGMA user_version=2");
     },
     "/values.sqlite: has layout 2, made by a newer version; this one knows 1; use the newer "
     "version, or another folder"},
    {[](Path, Path file) { execute(file, "CREATE TABLE notes (text)"); },
     "/values.sqlite: is not a store of Quiravent; move the file away to start with an empty one"},
    {[](Path folder, Path file) {
         setOneValue(folder);
         std::fstream(file, std::ios::in | std::ios::out).seekp(100) << std::string(900, '\xee');
     },
     "/values.sqlite: database disk image is malformed; move the file away to start with an empty "
     "one"},
    {[](Path folder, Path) { chmod(folder.c_str(), 0555); },
     "/values.sqlite: the file can't be made: Permission denied; name another folder with "
     "storage.folder or QUIRAVENT_STORAGE"},
    {[](Path folder, Path file) {
         setOneValue(folder);
         chmod(file.c_str(), 0444);
     },
     "/values.sqlite is read-only; the file and its folder must be writable"},
    {[](Path folder, Path) {
         setOneValue(folder);
         chmod(folder.c_str(), 0555);
     },
     "/values.sqlite: attempt to write a readonly database; the file and its folder must be "
     "writable"},
    {[](Path folder, Path) {
         fs::remove_all(folder.parent_path());
         std::ofstream{folder.parent_path()};
     },
     ": the folder can't be made: Not a directory; name another folder with storage.folder or "
     "QUIRAVENT_STORAGE"},
};

TEST(ValueStore, WhatIsUnusableIsRefusedWithTheReasonAndLeftAlone) {
    for (const Unusable& one : kUnusable) {
        SCOPED_TRACE(one.reason);
        const TemporaryFolder all;
        fs::permissions(all.path(), fs::perms::all);
        // The superuser may write anywhere, so it becomes somebody else for this.
        const ChildOutcome outcome = runInChild({}, [&] {
            ASSERT_TRUE(getuid() != 0 || setuid(65534) == 0);
            const std::string folder = all / "above/store";
            const std::string file = folder + '/' + ValueStore::kFileName;
            fs::create_directories(folder);
            one.prepare(folder, file);
            std::error_code isMissing;
            const auto size = fs::file_size(file, isMissing);
            EXPECT_EQ(openingError(folder), folder + one.reason);
            EXPECT_EQ(fs::file_size(file, isMissing), size);
        });
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
    }
}

TEST(ValueStore, FullDiskLeavesTheEarlierValueAndTheStoreUsable) {
    const TemporaryFolder folder;
    const ChildOutcome outcome = runInChild({}, [&] {
        ValueStore store(folder.path(), Durability::process);
        store.set("c", "k", "before");
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{200000, 200000};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
        EXPECT_THROW(store.set("c", "k", std::string(1000000, 'x')), DeviceError);
        EXPECT_EQ(store.get("c", "k"), "before");
        store.set("c", "k", "after");
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(ValueStore(folder.path(), Durability::process).get("c", "k"), "after");
}

TEST(ValueStore, ProcessesShareTheFileFromItsFirstMomentOn) {
    constexpr int kProcesses = 6;
    constexpr int kValues = 50;
    const TemporaryFolder folder;
    pid_t children[kProcesses];
    for (pid_t& child : children) {
        child = startChild([&] {
            ValueStore store(folder / "shared", Durability::process);
            for (int i = 0; i < kValues; ++i) {
                store.set("c", std::to_string((&child - children) * kValues + i), "v");
                store.set("c", "all", std::to_string(i));
            }
        });
    }
    for (const pid_t child : children) EXPECT_EQ(waitFor(child), 0);
    ValueStore store(folder / "shared", Durability::process);
    EXPECT_EQ(store.getAll("c").size(), size_t{kProcesses * kValues + 1});
}

std::string valueOf(uint32_t key) {
    return std::string(1000 + key * 7919 % 5000, static_cast<char>('a' + key % 26));
}

/// Has a process set values from a key on and tell of each that is set, and kills it at a random
/// moment; gives the key behind the last one that it told of.
uint32_t killWriter(const std::string& folder, uint32_t first, std::mt19937& random) {
    int channel[2];
    EXPECT_EQ(pipe(channel), 0);
    const pid_t child = startChild([&] {
        ValueStore store(folder, first % 2 == 0 ? Durability::process : Durability::machine);
        for (uint32_t key = first;; ++key) {
            store.set("c", std::to_string(key), valueOf(key));
            if (write(channel[1], &key, sizeof key) != sizeof key) return;
        }
    });
    close(channel[1]);
    const uint32_t enough = first + random() % 40;
    uint32_t next = first;
    const auto hears = [&] {
        uint32_t key = 0;
        if (read(channel[0], &key, sizeof key) != sizeof key) return false;
        next = key + 1;
        return true;
    };
    while (next < enough && hears()) continue;
    usleep(random() % 2000);
    kill(child, SIGKILL);
    waitFor(child);
    while (hears()) continue;
    close(channel[0]);
    return next;
}

TEST(ValueStore, WhatWasSetSurvivesEveryKillInTheMiddle) {
    const TemporaryFolder folder;
    std::mt19937 random(20261121);
    uint32_t next = 0;
    const int kills = test::countFromEnvironment("QUIRAVENT_KILLS", 12);
    for (int round = 0; round < kills; ++round) {
        next = killWriter(folder.path(), next, random);
        ValueStore store(folder.path(), Durability::process);
        const auto values = store.getAll("c");
        for (uint32_t key = 0; key < next; ++key) {
            ASSERT_EQ(values.count(std::to_string(key)), 1U) << key << " is lost";
        }
        for (const auto& [key, value] : values) {
            ASSERT_EQ(value, valueOf(static_cast<uint32_t>(std::stoul(key)))) << key;
        }
    }
    EXPECT_GT(next, 0U);
}

TEST(Persistence, OneHandlePerContextAndNoneBeforeTheFileIsOpenOrAfterItIsClosed) {
    const TemporaryFolder folder;
    std::string place = "/proc/none";
    Persistence persistence([&] { return place; }, Durability::process);
    EXPECT_THROW(persistence.open("a"), DeviceError);
    place = folder.path();
    const uint32_t a = persistence.open("a");
    const uint32_t b = persistence.open("");
    EXPECT_NE(a, 0U);
    EXPECT_NE(a, b);
    EXPECT_EQ(persistence.open("a"), a);
    std::string value = "untouched";
    EXPECT_EQ(persistence.set(a, "k", "v"), e_pl_status_ok);
    EXPECT_EQ(persistence.get(b, "k", value), e_pl_status_not_found);
    EXPECT_EQ(persistence.get(a ^ b, "k", value), e_pl_status_invalid_handle);
    EXPECT_EQ(value, "untouched");
    EXPECT_EQ(persistence.get(a, "k", value), e_pl_status_ok);
    EXPECT_EQ(value, "v");
    persistence.close();
    EXPECT_EQ(persistence.set(a, "k", "v"), e_pl_status_wrong_state);
    EXPECT_THROW(persistence.open("a"), DeviceError);
}

}  // namespace
}  // namespace quiravent::desktop
