#pragma once

#include <QCoreApplication>
#include <QStringList>
#include <QVector>

#include "launch/repair/RepairAction.h"

class QJsonArray;

/// A file that a component is installed from.
struct OfferedFile {
    QString name;
    qint64 size = -1;  ///< bytes; -1 while it is not known
    bool isCached = false;
    QString source;  ///< host or directory; empty when it is not known
};

/// A component or a Wine that a repair would install.
struct OfferedComponent {
    QString name;
    QString title;  ///< for people
    bool isAvailable = true;
    QString reason;  ///< why it cannot be had
    QStringList needs;
    QString winetricks;  ///< the verb, where that tool does the work
    QVector<OfferedFile> files;

    /// What the service's describe() answers. Rows that make no sense are left out.
    static QVector<OfferedComponent> read(const QJsonArray& described);
    /// Of all their files; 0 when that of one is not known.
    static qint64 bytes(const QVector<OfferedComponent>& components);
};

/// What "Repair" is going to do, told before the user asks for it.
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

    /// Plain text for the log of the launch; what it cannot install is an error line.
    QVector<Line> lines() const;
    /// The same as plain text for the button.
    QString toolTip() const;
};
