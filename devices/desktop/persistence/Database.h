#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>

namespace quiravent::desktop {

/// A connection to one SQLite file, which has to be there. For one thread at a time. Errors are
/// thrown as DeviceError, with a reason that names the file and says what to do.
class Database {
  public:
    /// path: absolute.
    explicit Database(const std::string& path);

    /// Runs statements that give no rows.
    void execute(const char* sql) const;

    /// Runs statements that give no rows and that SQLite refuses, instead of waiting, while another
    /// process has the file; so the waiting is done here.
    void executeWhenFree(const char* sql) const;

    /// The number that a query gives first.
    int64_t number(const char* sql) const;

    [[noreturn]] void fail() const;

    sqlite3* connection() const { return m_connection.get(); }

  private:
    struct Close {
        void operator()(sqlite3* connection) const { sqlite3_close(connection); }
    };

    std::string m_path;
    std::unique_ptr<sqlite3, Close> m_connection;
};

/// A statement that is prepared once and run often. Not to outlive its database.
class Statement {
  public:
    Statement(const Database& database, const char* sql);

    /// One run of the statement; its end frees what the run holds.
    class Run {
      public:
        explicit Run(Statement& statement) : m_statement(statement) {}
        ~Run();
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;

        /// Gives the parameter its bytes, which have to stay until the end of the run. index:
        /// from 1.
        Run& bind(int index, const std::string& bytes);

        /// True when there is a row, or one more.
        bool step();

        /// Bytes of a column of the row. index: from 0.
        std::string column(int index) const;

      private:
        Statement& m_statement;
    };

  private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    const Database& m_database;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

}  // namespace quiravent::desktop
