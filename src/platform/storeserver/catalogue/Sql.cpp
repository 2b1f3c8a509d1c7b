#include "storeserver/catalogue/Sql.h"

#include <QtGlobal>

namespace StoreServer {

namespace {

// Its counters are behind one lock for all threads.
const int isWithoutCounters = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);

}  // namespace

SqlDatabase::SqlDatabase(const std::string& name, int flags) {
    Q_UNUSED(isWithoutCounters)
    sqlite3* handle = nullptr;
    const int code = sqlite3_open_v2(name.c_str(), &handle, flags, nullptr);
    m_handle.reset(handle);
    if (code != SQLITE_OK)
        throw SqlError(handle ? sqlite3_errmsg(handle) : "out of memory", code);
}

void SqlDatabase::run(const std::string& statements) {
    const int code = sqlite3_exec(handle(), statements.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK)
        throw SqlError(sqlite3_errmsg(handle()), code);
}

SqlStatement::SqlStatement(const SqlDatabase& database, std::string_view text) {
    sqlite3_stmt* handle = nullptr;
    const int code = sqlite3_prepare_v3(database.handle(), text.data(), int(text.size()),
                                        SQLITE_PREPARE_PERSISTENT, &handle, nullptr);
    m_handle.reset(handle);
    if (code != SQLITE_OK)
        throw SqlError(sqlite3_errmsg(database.handle()), code);
}

void SqlStatement::check(int code) const {
    if (code != SQLITE_OK)
        throw SqlError(sqlite3_errmsg(sqlite3_db_handle(m_handle.get())), code);
}

SqlStatement& SqlStatement::bind(int index, std::string_view value) {
    // A null pointer would be bound as NULL.
    check(sqlite3_bind_text64(m_handle.get(), index, value.data() ? value.data() : "", value.size(),
                              SQLITE_STATIC, SQLITE_UTF8));
    return *this;
}

SqlStatement& SqlStatement::bind(int index, long long value) {
    check(sqlite3_bind_int64(m_handle.get(), index, value));
    return *this;
}

bool SqlStatement::step() {
    const int code = sqlite3_step(m_handle.get());
    if (code == SQLITE_ROW)
        return true;
    if (code != SQLITE_DONE)
        check(code);
    return false;
}

void SqlStatement::run() {
    while (step()) {
    }
    reset();
}

void SqlStatement::reset() {
    sqlite3_reset(m_handle.get());
    sqlite3_clear_bindings(m_handle.get());
}

std::string_view SqlStatement::text(int column) const {
    const void* data = sqlite3_column_blob(m_handle.get(), column);
    return {static_cast<const char*>(data), size_t(sqlite3_column_bytes(m_handle.get(), column))};
}

}  // namespace StoreServer
