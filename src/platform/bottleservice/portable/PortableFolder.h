#pragma once

#include <QByteArray>
#include <QVector>

#include "bottleservice/portable/PortableSource.h"

/// A folder. Links in it are copied as links when they stay in it, and never followed.
class PortableFolder : public PortableSource {
public:
    explicit PortableFolder(const QString& path) : PortableSource(path) {}

    Reason survey(const std::atomic_bool& cancelled) override;
    Reason copyTo(const QString& directory, BackupFile::Progress* progress) override;

private:
    enum class Type { Directory, File, Link };
    struct Item {
        QByteArray path;  ///< relative, as on disk
        Type type;
    };

    Reason copyItem(const Item& item, const QByteArray& target, BackupFile::Progress* progress) const;

    QVector<Item> m_items;  ///< a directory before what lies in it
};
