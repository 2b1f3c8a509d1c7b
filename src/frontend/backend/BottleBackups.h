#pragma once

#include "backend/ServiceProxy.h"

/// The client of the background service's interface for backups of whole bottles and for portable programs;
/// holds no state. Lives in the GUI thread. com.lumora.Manager.Backup.xml says what the answers hold. A copy,
/// in either direction, is known by the absolute path of its file; its answer comes at its end, however long
/// that takes.
class BottleBackups : public ServiceProxy<BottleBackups> {
    Q_OBJECT
    friend class Fenk::Singleton<BottleBackups>;

public:
    void exportBottle(const QString& bottle, const QString& file, QObject* context, const Handler& handler) {
        watch("exportBottle", {bottle, file}, context, handler);
    }
    /// With the name that the bottle had, or one like it.
    void importBottle(const QString& file, QObject* context, const Handler& handler) {
        watch("importBottle", {file, QString()}, context, handler);
    }
    /// Makes a bottle of its own with a copy of a portable program: a folder or a zip archive.
    void importPortable(const QString& source, QObject* context, const Handler& handler) {
        watch("importPortable", {source}, context, handler);
    }
    /// What a file holds.
    void describe(const QString& file, QObject* context, const Handler& handler) {
        watch("describeBackup", {file}, context, handler);
    }
    void cancel(const QString& file) { fire("cancelBottleCopy", {file}); }

Q_SIGNALS:
    /// From the bus, under this name. In bytes; the total is 0 as long as it is not known.
    void copyProgress(const QString& file, qlonglong done, qlonglong total);

private:
    BottleBackups() : ServiceProxy("Backup", NoTimeoutMs) {}
};
