#pragma once

#include <QStringList>

/// Whether what a set-up wants is there. Facts of the machine and of the background service.
struct SetupPackages {
    QStringList installed;         ///< of the wanted names, the packages that are installed
    QStringList available;         ///< of the wanted names, those that the package manager could install
    QStringList runnersInstalled;  ///< of the background service
    QStringList runnersSupported;  ///< that the service could fetch
    bool hasAppStore = false;      ///< for packages that are available

    enum class State {
        Installed,
        Missing,   ///< can be had as a package or from the service
        Replaced,  ///< the user cannot get it here; the service uses the Wine that it has
    };
    /// Whether the user can get it from the dialog.
    bool canBeHad(const QString& name) const;
    /// Where nothing of this is known, and the service has no Wine, the name is missing.
    State of(const QString& name) const;
    /// What has to be installed for a missing name: the service's ordinary Wine, if only that can be had.
    QString toInstall(const QString& name) const;

    /// Asks the package manager and the bus, which may take seconds. The runners stay empty. For any thread.
    static SetupPackages ask(const QStringList& names);
};
