#pragma once

#include <QHash>

#include "bottleservice/requests/OfflineTransfer.h"

class BottleEngine;
class DependencyRequests;
struct OfflineLists;

/// Installs the components of exported files (OfflineList.h) into a bottle, without the network. First the
/// lists of the files are read, which may be refused while programs run in the bottle. Then every file is
/// checked completely, in a hidden directory, and only then its contents go to where downloads lie; a file
/// that is not what it should be fails with all its components. Then the components are installed one after
/// the other, needed ones first. What fails, fails alone, but for those that need it.
class OfflineImport : public OfflineTransfer {
    Q_OBJECT

public:
    struct Asked {
        QString bottle;
        QStringList archives;    ///< absolute paths
        QStringList components;  ///< to install; empty: all
        QString dataDir;
        QString store;  ///< directory of the downloads
    };

    OfflineImport(const Asked& asked, BottleEngine* engine, DependencyRequests* dependencies,
                  QObject* parent = nullptr);

    const QString& bottle() const { return m_asked.bottle; }

    void start() override;
    void cancel() override;

    /// The hidden directories that interrupted imports have left where downloads lie.
    static QStringList leftovers(const QString& store);

Q_SIGNALS:
    /// Exactly once: the import has begun, and its states tell the rest; or why it has not, which is its end.
    void begun(const Answer& answer);

private:
    using Failures = QHash<QString, Reason>;

    void readLists();
    void onListsRead(const OfflineLists& lists);
    void refuse(const Answer& answer);
    void unpack(const QMap<QString, QStringList>& archives);
    void next();
    void onInstalled(const QString& component, const Answer& result);

    Asked m_asked;
    BottleEngine* m_engine;
    DependencyRequests* m_dependencies;
    QStringList m_waiting;
    QString m_current;  ///< that is being installed; empty between two
    int m_currentNumber = 0;
    Failures m_failures;  ///< by component
};
