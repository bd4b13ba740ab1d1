#include "persistence/ValueStore.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "common/ChildProcess.h"
#include "common/TemporaryFolder.h"
#include "persistence/Persistence.h"
#include "support/DeviceError.h"

namespace quiravent::desktop {
namespace {

const std::string kNul("a\0b", 3);

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

int waitFor(pid_t child) {
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

TEST(ValueStore, KeepsAnyBytesAcrossOpenings) {
    const std::vector<std::string> texts{
        "", "a", kNul, "\xff\xfe", "null", "\xc3\xa9", std::string(3000000, 'x')};
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

TEST(ValueStore, UnusableFilesAreRefusedWithTheReasonAndLeftAlone) {
    struct Case {
        const char* name;
        void (*prepare)(const std::string& file);
        const char* reason;
    };
    const Case cases[] = {
        {"no database",
         [](const std::string& file) { std::ofstream(file) << std::string(5000, 'x'); },
         ": file is not a database; move the file away to start with an empty one"},
        {"newer layout",
         [](const std::string& file) {
             execute(file, "PRAGMA application_id = 0x51727674; PRAGMA user_version = 2;");
         },
         ": has layout 2, made by a newer version; this one knows 1; use the newer version, or "
         "another folder"},
        {"another program's",
         [](const std::string& file) { execute(file, "CREATE TABLE notes (text)"); },
         ": is not a store of Quiravent; move the file away to start with an empty one"},
        {"damaged",
         [](const std::string& file) {
             const std::string folder = std::filesystem::path(file).parent_path();
             ValueStore(folder, Durability::process).set("c", "k", "v");
             std::fstream(file, std::ios::in | std::ios::out).seekp(100)
                 << std::string(900, '\xee');
         },
         ": database disk image is malformed; move the file away to start with an empty one"},
    };
    for (const Case& each : cases) {
        const TemporaryFolder folder;
        const std::string file = folder / ValueStore::kFileName;
        each.prepare(file);
        EXPECT_EQ(openingError(folder.path()), file + each.reason) << each.name;
        EXPECT_GT(std::filesystem::file_size(file), 0U) << each.name;
    }
}

TEST(ValueStore, FolderThatCannotBeMadeIsRefused) {
    const TemporaryFolder folder;
    const std::string place = folder.write("file", {'x'}) + "/below";
    EXPECT_EQ(openingError(place),
              place +
                  ": the folder can't be made: Not a directory; name another folder with "
                  "storage.folder or QUIRAVENT_STORAGE");
}

TEST(ValueStore, WithoutTheRightToWriteItIsRefused) {
    struct Case {
        mode_t file;  ///< 0: there is none
        const char* reason;
    };
    const Case cases[] = {
        {0,
         ": the file can't be made: Permission denied; name another folder with storage.folder or "
         "QUIRAVENT_STORAGE"},
        {0444, " is read-only; the file and its folder must be writable"},
        {0666, ": attempt to write a readonly database; the file and its folder must be writable"},
    };
    for (const Case& each : cases) {
        const TemporaryFolder folder;
        const std::string file = folder / ValueStore::kFileName;
        if (each.file != 0) {
            ValueStore(folder.path(), Durability::process).set("c", "k", "v");
            chmod(file.c_str(), each.file);
        }
        chmod(folder.path().c_str(), 0555);
        // The superuser may write anywhere, so it becomes somebody else for this.
        const ChildOutcome outcome = runInChild({}, [&] {
            ASSERT_TRUE(getuid() != 0 || setuid(65534) == 0);
            EXPECT_EQ(openingError(folder.path()), file + each.reason);
        });
        chmod(folder.path().c_str(), 0755);
        EXPECT_EQ(outcome.status, 0);
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
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
        children.push_back(startChild([&] {
            ValueStore store(folder / "shared", Durability::process);
            for (int i = 0; i < kValues; ++i) {
                store.set("c", std::to_string(process * kValues + i), "v");
                store.set("c", "all", std::to_string(i));
            }
        }));
    }
    for (const pid_t child : children) EXPECT_EQ(waitFor(child), 0);
    ValueStore store(folder / "shared", Durability::process);
    EXPECT_EQ(store.getAll("c").size(), size_t{kProcesses * kValues + 1});
}

/// How often the writing process is killed: QUIRAVENT_KILLS, or a few times.
int numberOfKills() {
    const char* const text = std::getenv("QUIRAVENT_KILLS");
    return text != nullptr ? std::atoi(text) : 12;
}

std::string valueOf(uint32_t key) {
    return std::string(1000 + key * 7919 % 5000, static_cast<char>('a' + key % 26));
}

/// Sets values from a key on until it is killed, and tells each key when its value is set.
pid_t startWriter(const std::string& folder, uint32_t first, int channel) {
    return startChild([=] {
        ValueStore store(folder, first % 2 == 0 ? Durability::process : Durability::machine);
        for (uint32_t key = first;; ++key) {
            store.set("c", std::to_string(key), valueOf(key));
            if (write(channel, &key, sizeof key) != sizeof key) return;
        }
    });
}

/// Kills a writer at a random moment; gives the key behind the last one that it told of.
uint32_t killWriter(const std::string& folder, uint32_t first, std::mt19937& random) {
    int channel[2];
    EXPECT_EQ(pipe(channel), 0);
    const pid_t child = startWriter(folder, first, channel[1]);
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
    for (int round = 0; round < numberOfKills(); ++round) {
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
