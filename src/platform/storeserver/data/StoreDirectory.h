#pragma once

#include <optional>

#include "storeserver/data/IconFile.h"
#include "storeserver/data/StoreRecords.h"

namespace StoreServer {

/// All that the store has of one application.
struct AppEntry {
    AppRecord record;
    QByteArray manifest;
    IconFile icon;
};

/// The directory that a store is made of:
///     categories.yml
///     issue-types.yml
///     apps/<appInfoId>/{store.yml, manifest.yml, icon.png or icon.svg}
/// The icon and the issue types may be missing. Names that start with a point are left out. Keeps nothing of
/// what it reads.
class StoreDirectory {
public:
    explicit StoreDirectory(const QString& path) : m_path(path) {}

    const QString& path() const { return m_path; }

    /// The names of all applications in their order, with faults at those that are no names; nothing, with a
    /// fault, if they cannot be listed. A link that leads nowhere has a fault but is still an application's.
    std::optional<QStringList> appInfoIds(Faults& faults) const;
    /// Each reads and checks; nothing after a fault.
    std::optional<QList<CategoryRecord>> categories(Faults& faults) const;
    /// The standard ones where the store has no file of them.
    std::optional<QList<IssueTypeRecord>> issueTypes(Faults& faults) const;
    std::optional<AppEntry> app(const QString& appInfoId, Faults& faults) const;

    /// Change with the sizes and times of the files behind them.
    QByteArray categoriesSignature() const;
    QByteArray issueTypesSignature() const;
    QByteArray signature(const QString& appInfoId) const;

private:
    std::optional<QByteArray> read(const QString& file, qint64 maximum, Faults& faults) const;
    IconFile icon(const QString& directory, Faults& faults) const;

    QString m_path;
};

}  // namespace StoreServer
