#pragma once

#include <QStringList>
#include <QVector>

#include "bottleservice/portable/PortableSource.h"

/// A zip archive from anywhere. It is refused as a whole when it holds anything but files and directories
/// with names inside it, when a name comes twice, when it is protected by a password, or when it unpacks to
/// much more than its size. Reading goes by its list at the end; what the files hold must agree with it.
class PortableArchive : public PortableSource {
public:
    explicit PortableArchive(const QString& path) : PortableSource(path) {}

    Reason survey(const std::atomic_bool& cancelled) override;
    Reason copyTo(const QString& directory, BackupFile::Progress* progress) override;

private:
    struct Item {
        QByteArray rawName;
        qint64 bytes;
        bool isDirectory;
    };

    Reason broken(const QString& detail) const;
    BackupFile::Handle opened(Reason* failure) const;
    Reason addItem(archive* reader, archive_entry* entry);
    Reason decodeNames();
    Reason unpack(archive* reader, archive_entry* entry, const Item& item, const QString& path,
                  BackupFile::Progress* progress) const;

    QVector<Item> m_items;
    QStringList m_names;  ///< of the items, decoded
};
