#pragma once

#include <QHash>

#include "bottleservice/requests/OfflineTransfer.h"

class DependencyRequests;

/// Installs the components of exported files (OfflineList.h) into a bottle, without the network. First every
/// file is checked completely, in a hidden directory, and only then its contents go to where downloads lie;
/// a file that is not what it should be fails with all its components. Then the components are installed one
/// after the other, needed ones first. What fails, fails alone, but for those that need it.
class OfflineImport : public OfflineTransfer {
    Q_OBJECT

public:
    struct Asked {
        QString bottle;
        QMap<QString, QStringList> archives;  ///< path to the components that its list names
        QStringList components;               ///< to install, of those
        QString dataDir;
        QString store;  ///< directory of the downloads
    };

    OfflineImport(const Asked& asked, DependencyRequests* dependencies, QObject* parent = nullptr);

    void start() override;
    void cancel() override;

    /// The hidden directories that interrupted imports have left where downloads lie.
    static QStringList leftovers(const QString& store);

private:
    using Failures = QHash<QString, Reason>;

    void install();
    void next();
    void onInstalled(const QString& component, const Answer& result);

    Asked m_asked;
    DependencyRequests* m_dependencies;
    QStringList m_waiting;
    QString m_current;
    Failures m_failures;  ///< by component
};
