#pragma once

#include <sqlite3.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace StoreServer {

/// What SQLite says of a statement that failed. Does not leave the catalogue.
class SqlError : public std::runtime_error {
public:
    explicit SqlError(const std::string& text, int code = SQLITE_ERROR)
        : std::runtime_error(text), m_code(code) {}

    /// Another connection has the file.
    bool isBusy() const { return m_code == SQLITE_BUSY || m_code == SQLITE_LOCKED; }
    /// The file is no database, or not a whole one, or has other tables.
    bool isDamage() const {
        return m_code == SQLITE_NOTADB || m_code == SQLITE_CORRUPT || m_code == SQLITE_ERROR;
    }

private:
    int m_code;
};

/// One connection of SQLite, for one thread at a time. All methods throw SqlError.
class SqlDatabase {
public:
    /// `name` is a file's path, or with `flags` having SQLITE_OPEN_URI an address of SQLite.
    SqlDatabase(const std::string& name, int flags);

    void run(const std::string& statements);
    sqlite3* handle() const { return m_handle.get(); }

private:
    struct Closer {
        void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
    };
    std::unique_ptr<sqlite3, Closer> m_handle;
};

/// A prepared statement. Texts are bound without a copy, so they must live until the statement has been
/// stepped to its end or reset; columns are valid until the next step.
class SqlStatement {
public:
    SqlStatement() = default;
    SqlStatement(const SqlDatabase& database, std::string_view text);

    bool isPrepared() const { return m_handle != nullptr; }

    SqlStatement& bind(int index, std::string_view value);
    SqlStatement& bind(int index, long long value);
    /// True when there is a row.
    bool step();
    /// Runs a statement without a result, and makes it ready for the next time.
    void run();
    void reset();

    long long number(int column) const { return sqlite3_column_int64(m_handle.get(), column); }
    std::string_view text(int column) const;

private:
    void check(int code) const;

    struct Finalizer {
        void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
    };
    std::unique_ptr<sqlite3_stmt, Finalizer> m_handle;
};

}  // namespace StoreServer
