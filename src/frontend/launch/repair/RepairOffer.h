#pragma once

#include <QCoreApplication>
#include <QStringList>
#include <QVector>

#include "launch/repair/RepairAction.h"

class QJsonArray;

/// A file that a component is installed from.
struct OfferedFile {
    QString name;
    qint64 size = -1;  ///< bytes; -1: unknown
    bool isCached = false;
    QString source;  ///< host or directory; empty when unknown
};

/// A component or runner that a repair would install.
struct OfferedComponent {
    Q_DECLARE_TR_FUNCTIONS(OfferedComponent)
public:
    QString name;
    QString title;  ///< display name
    bool isAvailable = true;
    QString reason;  ///< why it is not available
    QStringList needs;
    QString winetricks;  ///< the winetricks verb, if winetricks installs it
    QVector<OfferedFile> files;

    /// Reads the answer of the service's describe(); skips invalid rows.
    static QVector<OfferedComponent> read(const QJsonArray& described);
    /// Total size of all files; 0 if any size is unknown.
    static qint64 bytes(const QVector<OfferedComponent>& components);
    /// The same for the user: says what is not known. Empty if nothing is fetched.
    QString sizeText() const;
};

/// What "Repair" is going to do, shown before the user chooses it.
struct RepairOffer {
    Q_DECLARE_TR_FUNCTIONS(RepairOffer)
public:
    struct Line {
        QString text;
        bool isError;
    };

    RepairAction action = RepairAction::None;
    QVector<OfferedComponent> components;
    QStringList fonts;

    /// Plain text for the launch log; components that are not available are error lines.
    QVector<Line> lines() const;
    /// The lines joined, as plain text for the button.
    QString toolTip() const;
};
