#pragma once

#include <QObject>
#include <memory>

#include "bottleservice/requests/OfflineExport.h"
#include "bottleservice/requests/OfflineImport.h"
#include "bottleservice/result/Answer.h"

class BottleEngine;
class DependencyRequests;
class Downloads;

/// The requests that carry components to machines without network: at most one export and one import at a
/// time. What has ended keeps its states until the next one begins; a new service knows of none. Owned by
/// BottleService; lives in the main thread.
class OfflineRequests : public QObject {
    Q_OBJECT

public:
    OfflineRequests(BottleEngine* engine, Downloads* downloads, DependencyRequests* dependencies,
                    QObject* parent = nullptr);

    /// Removes what a killed service has left unfinished. Call before the first request.
    void recover();

    /// Answers when the export has begun. The target is the absolute path of a ".tar" file that does not
    /// exist.
    void exportDeps(const QStringList& components, const QString& target, const Reply& reply);
    /// Answers when the lists of the files have been read and the import begins, or with Busy while programs
    /// run in the bottle; until then there are no states. Imports those of the components, all without any.
    void importDeps(const QString& bottle, const QStringList& archives, const QStringList& components,
                    const Reply& reply);
    bool isExporting() const { return m_export && !m_export->isDone(); }
    bool isImporting() const { return m_import && !m_import->isDone(); }
    QJsonObject exportingStatus() const { return m_export ? m_export->states() : QJsonObject(); }
    QJsonObject importingStatus() const { return m_import ? m_import->states() : QJsonObject(); }

    /// What can be installed without the network: of the named components with the files of this machine, and
    /// of the components in files that are given by their absolute paths with these as well.
    void check(const QStringList& namesAndArchives, const Reply& reply);
    /// All components that this one needs.
    QStringList dependencies(const QString& component) const;

    /// Nothing happens when none is running. The components that are not done fail.
    void cancelExport();
    void cancelImport();
    /// The bottle is being deleted: cancels its import.
    void cancelForDeletion(const QString& bottle);
    /// Cancels both.
    void close();
    bool isIdle() const { return !isExporting() && !isImporting(); }

Q_SIGNALS:
    /// `type` is "export" or "import"; `info` is the component's state with its "name".
    void progress(const QString& type, const QJsonObject& info);

private:
    void start(OfflineTransfer* transfer, const QString& type);

    BottleEngine* m_engine;
    Downloads* m_downloads;
    DependencyRequests* m_dependencies;
    std::unique_ptr<OfflineExport> m_export;
    std::unique_ptr<OfflineImport> m_import;
};
