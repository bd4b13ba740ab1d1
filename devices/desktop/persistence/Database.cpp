#include "persistence/Database.h"

#include <chrono>
#include <system_error>

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

/// How long another process may keep the file before a call gives up.
constexpr int kBusyMilliseconds = 5000;

const char* adviceFor(int primaryCode) {
    switch (primaryCode) {
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            return "; move the file away to start with an empty one";
        case SQLITE_FULL:
            return "; make room on the disk";
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return "; another process keeps it, try again when it has ended";
        case SQLITE_READONLY:
        case SQLITE_CANTOPEN:
        case SQLITE_PERM:
            return "; the file and its folder must be writable";
        default:
            return "";
    }
}

bool isBusy(int code) { return (code & 0xff) == SQLITE_BUSY; }

}  // namespace

Database::Database(const std::string& path) : m_path(path) {
    sqlite3* connection = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    const int code = sqlite3_open_v2(path.c_str(), &connection, flags, nullptr);
    m_connection.reset(connection);
    if (code != SQLITE_OK) fail();
    sqlite3_busy_timeout(connection, kBusyMilliseconds);
    // Without the right to write, SQLite opens the file for reading and tells nobody.
    if (sqlite3_db_readonly(connection, "main") == 1) {
        throw DeviceError(e_pl_status_io_error,
                          joined(path, " is read-only", adviceFor(SQLITE_READONLY)));
    }
}

void Database::execute(const char* sql) const {
    if (sqlite3_exec(connection(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail();
}

void Database::executeWhenFree(const char* sql) const {
    constexpr int kPauseMilliseconds = 5;
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(kBusyMilliseconds);
    int code = sqlite3_exec(connection(), sql, nullptr, nullptr, nullptr);
    while (isBusy(code) && std::chrono::steady_clock::now() < end) {
        sqlite3_sleep(kPauseMilliseconds);
        code = sqlite3_exec(connection(), sql, nullptr, nullptr, nullptr);
    }
    if (code != SQLITE_OK) fail();
}

int64_t Database::number(const char* sql) const {
    int64_t result = 0;
    const auto keepFirst = [](void* output, int, char** values, char**) {
        *static_cast<int64_t*>(output) = values[0] != nullptr ? std::stoll(values[0]) : 0;
        return 0;
    };
    if (sqlite3_exec(connection(), sql, keepFirst, &result, nullptr) != SQLITE_OK) fail();
    return result;
}

void Database::fail() const {
    if (!connection()) throw std::bad_alloc();
    const int primaryCode = sqlite3_errcode(connection()) & 0xff;
    if (primaryCode == SQLITE_NOMEM) throw std::bad_alloc();
    std::string reason = joined(m_path, ": ", sqlite3_errmsg(connection()));
    const int systemError = sqlite3_system_errno(connection());
    const bool fromSystem = primaryCode == SQLITE_CANTOPEN || primaryCode == SQLITE_IOERR;
    if (fromSystem && systemError != 0) {
        reason += joined(" (", std::generic_category().message(systemError), ")");
    }
    throw DeviceError(e_pl_status_io_error, reason + adviceFor(primaryCode));
}

Statement::Statement(const Database& database, const char* sql) : m_database(database) {
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v3(database.connection(), sql, -1, SQLITE_PREPARE_PERSISTENT,
                                        &statement, nullptr);
    m_statement.reset(statement);
    if (code != SQLITE_OK) database.fail();
}

Statement::Run::~Run() {
    // The code repeats what step() has already thrown.
    sqlite3_reset(m_statement.m_statement.get());
    sqlite3_clear_bindings(m_statement.m_statement.get());
}

Statement::Run& Statement::Run::bind(int index, const std::string& bytes) {
    const int code = sqlite3_bind_blob64(m_statement.m_statement.get(), index, bytes.data(),
                                         bytes.size(), SQLITE_STATIC);
    if (code != SQLITE_OK) m_statement.m_database.fail();
    return *this;
}

bool Statement::Run::step() {
    const int code = sqlite3_step(m_statement.m_statement.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) m_statement.m_database.fail();
    return code == SQLITE_ROW;
}

std::string Statement::Run::column(int index) const {
    sqlite3_stmt* const statement = m_statement.m_statement.get();
    const void* const bytes = sqlite3_column_blob(statement, index);
    const auto size = static_cast<size_t>(sqlite3_column_bytes(statement, index));
    // No bytes are null for an empty value, but also for want of memory.
    if (bytes == nullptr) {
        if (sqlite3_errcode(m_statement.m_database.connection()) == SQLITE_NOMEM) {
            throw std::bad_alloc();
        }
        return {};
    }
    return {static_cast<const char*>(bytes), size};
}

}  // namespace quiravent::desktop
