#pragma once

#include "storeserver/catalogue/Sql.h"
#include "storeserver/data/StoreDirectory.h"

namespace StoreServer {

/// The one copy of the catalogue that changes: a SQLite file without a name, which is gone when the process
/// ends. All methods throw SqlError.
class CatalogueWriter {
public:
    CatalogueWriter();

    void begin() { m_database.run("BEGIN"); }
    void commit() { m_database.run("COMMIT"); }
    /// Never throws.
    void rollBack();

    QStringList appInfoIds();
    /// The application that has the number, empty if none has.
    QString appWithId(qint64 appId);
    /// Removing what is not there does nothing. An application is removed before it is added again.
    void remove(const QString& appInfoId);
    void add(const AppEntry& entry);

    /// Writes a compact copy of what is committed to a new file.
    void copyTo(const QString& file);

private:
    SqlDatabase m_database;
};

}  // namespace StoreServer
