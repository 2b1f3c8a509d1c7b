#pragma once

#include <QJsonObject>
#include <QStringList>

#include "backend/ServiceProxy.h"

/// The client of the background service's interface for machines without network: exports components into
/// files and imports them from there. The work is done in the service, at most one export and one import at a
/// time, and goes on when nobody looks. Holds no state. Lives in the GUI thread; nothing waits.
/// com.lumora.Manager.OfflineDependency.xml says what the answers hold; a failed question reads as an empty
/// object or array, without a log line.
class OfflineDependency : public ServiceProxy<OfflineDependency> {
    Q_OBJECT
    friend class Fenk::Singleton<OfflineDependency>;

public:
    enum class Transfer { Export, Import };

    /// Begin the work. The handlers get the end of the call, which says whether it has begun; the process
    /// stays until then.
    void exportDeps(const QStringList& names, const QString& target, QObject* context,
                    const Handler& handler) {
        begin("exportDeps", {names, target}, context, handler);
    }
    void importDeps(const QString& bottle, const QStringList& files, QObject* context,
                    const Handler& handler) {
        begin("importDeps", {bottle, files}, context, handler);
    }
    /// The same for some of the components in the files.
    void importChosenDeps(const QString& bottle, const QStringList& files, const QStringList& names,
                          QObject* context, const Handler& handler) {
        begin("importChosenDeps", {bottle, files, names}, context, handler);
    }

    /// The answer's text is "true" or "false".
    void isExporting(QObject* context, const Handler& handler) { watch("isExporting", {}, context, handler); }
    void isImporting(QObject* context, const Handler& handler) { watch("isImporting", {}, context, handler); }
    /// The answer is an object, component name to state; empty while the work is being prepared.
    void exportingStatus(QObject* context, const Handler& handler) {
        watch("exportingStatus", {}, context, handler);
    }
    void importingStatus(QObject* context, const Handler& handler) {
        watch("importingStatus", {}, context, handler);
    }
    /// Cancels what is running; its states tell the end.
    void cancel(Transfer transfer) {
        fire(transfer == Transfer::Export ? "cancelExport" : "cancelImport", {});
    }
    /// Names of components, or paths of exported files; the answer is an object with "valid" and "missing".
    void checkDeps(const QStringList& names, QObject* context, const Handler& handler) {
        watch("checkDeps", {names}, context, handler);
    }
    /// The answer is an array of names.
    void getDependencies(const QString& name, QObject* context, const Handler& handler) {
        watch("getDependencies", {name}, context, handler);
    }

Q_SIGNALS:
    /// From the bus, under this name: "export" or "import", and the text of an object.
    void notifyProgress(const QString& type, const QString& info);
    /// The same with the object: "name" and the component's state.
    void progressNotified(const QString& type, const QJsonObject& info);

private:
    OfflineDependency();
    void begin(const QString& method, const QVariantList& arguments, QObject* context,
               const Handler& handler);
};
