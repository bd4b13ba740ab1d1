#include "persistence/ValueStore.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

namespace filesystem = std::filesystem;

/// Tells our file from other SQLite files: "Qrvt" as a number.
constexpr int64_t kApplicationId = 0x51727674;

/// Layout of the file. One that is newer than this program is left alone.
constexpr int64_t kVersion = 1;

constexpr const char* kLayout =
    "CREATE TABLE value (context BLOB NOT NULL, key BLOB NOT NULL, value BLOB NOT NULL,"
    " PRIMARY KEY (context, key)) WITHOUT ROWID;";

[[noreturn]] void failWith(const std::string& path, const std::string& reason) {
    throw DeviceError(e_pl_status_io_error, joined(path, ": ", reason));
}

[[noreturn]] void failWithSystemError(const filesystem::path& path, const char* what) {
    failWith(path.string(), joined(what, ": ", std::generic_category().message(errno),
                                   "; name another folder with storage.folder or "
                                   "QUIRAVENT_STORAGE"));
}

void makeFolder(const filesystem::path& folder) {
    filesystem::path part;
    for (const filesystem::path& name : folder) {
        part /= name;
        if (::mkdir(part.c_str(), S_IRWXU) == 0 || errno == EEXIST) continue;
        // The system tells an existing folder apart only after the right to write in its parent.
        std::error_code ignored;
        if (!filesystem::is_directory(part, ignored)) {
            failWithSystemError(part, "the folder can't be made");
        }
    }
}

/// Makes an empty file unless there is one; SQLite itself would leave it open to all users.
void makeFile(const filesystem::path& path) {
    const int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
    const int file = ::open(path.c_str(), flags, S_IRUSR | S_IWUSR);
    if (file >= 0) {
        ::close(file);
    } else if (errno != EEXIST) {
        failWithSystemError(path, "the file can't be made");
    }
}

std::string preparedFile(const std::string& folder) {
    const filesystem::path absolute = filesystem::absolute(folder);
    makeFolder(absolute);
    filesystem::path file = absolute / ValueStore::kFileName;
    makeFile(file);
    return file.string();
}

void checkVersion(const Database& database, const std::string& path) {
    const int64_t version = database.number("PRAGMA user_version");
    const int64_t application = database.number("PRAGMA application_id");
    const int64_t tables = database.number("SELECT count(*) FROM sqlite_master");
    const bool fresh = version == 0 && application == 0 && tables == 0;
    if (!fresh && application != kApplicationId) {
        failWith(path,
                 "is not a store of Quiravent; move the file away to start with an empty one");
    }
    if (version > kVersion) {
        failWith(path, joined("has layout ", version, ", made by a newer version; this one knows ",
                              kVersion, "; use the newer version, or another folder"));
    }
    if (!fresh) return;
    database.execute(kLayout);
    database.execute(joined("PRAGMA application_id = ", kApplicationId).c_str());
    database.execute(joined("PRAGMA user_version = ", kVersion).c_str());
}

/// In one transaction, so that of several processes one makes the layout and the others find it.
void prepareLayout(const Database& database, const std::string& path) {
    database.execute("BEGIN IMMEDIATE");
    checkVersion(database, path);
    database.execute("COMMIT");
}

Database openDatabase(const std::string& folder, Durability durability) {
    const std::string path = preparedFile(folder);
    Database database(path);
    // With the write-ahead log a commit under NORMAL is a write to the log, safe against the end
    // of the process; FULL also waits until the log is on the disk.
    database.executeWhenFree("PRAGMA journal_mode = WAL");
    database.execute(durability == Durability::machine ? "PRAGMA synchronous = FULL"
                                                       : "PRAGMA synchronous = NORMAL");
    prepareLayout(database, path);
    return database;
}

}  // namespace

ValueStore::ValueStore(const std::string& folder, Durability durability)
    : m_database(openDatabase(folder, durability)),
      m_get(m_database, "SELECT value FROM value WHERE context = ?1 AND key = ?2"),
      m_set(m_database,
            "INSERT INTO value (context, key, value) VALUES (?1, ?2, ?3)"
            " ON CONFLICT (context, key) DO UPDATE SET value = excluded.value"),
      m_getAll(m_database, "SELECT key, value FROM value WHERE context = ?1 ORDER BY key") {}

std::optional<std::string> ValueStore::get(const std::string& context, const std::string& key) {
    Statement::Run run(m_get);
    if (!run.bind(1, context).bind(2, key).step()) return std::nullopt;
    return run.column(0);
}

void ValueStore::set(const std::string& context, const std::string& key, const std::string& value) {
    Statement::Run run(m_set);
    run.bind(1, context).bind(2, key).bind(3, value).step();
}

std::map<std::string, std::string> ValueStore::getAll(const std::string& context) {
    std::map<std::string, std::string> values;
    Statement::Run run(m_getAll);
    run.bind(1, context);
    while (run.step()) values.emplace_hint(values.end(), run.column(0), run.column(1));
    return values;
}

}  // namespace quiravent::desktop
