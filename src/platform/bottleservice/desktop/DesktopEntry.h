#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// A file of the kind application/x-desktop, after the freedesktop.org Desktop Entry Specification 1.1.
struct DesktopEntry {
    QString name;
    QString icon;          ///< a path or the name of a theme icon
    QStringList command;   ///< program and arguments, as the program shall see them
    QString fileArgument;  ///< "%f", "%u" or nothing
    QString wmClass;
    QStringList mimeTypes;
    bool isHidden = false;  ///< not in menus, only among what opens a file

    QByteArray toText() const;

    /// Quotes one argument for "Exec".
    static QString quoted(const QString& argument);
};
