#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <functional>

/// Calls of the desktop's own services. Failures are logged; only notify() reports them.
namespace DesktopUtils {

/// A desktop notification that stays 3 s. actions are pairs of key and label; hints go as they are. Blocks
/// until the notification service has answered; false when there is none, or it does not answer in 5 s.
bool notify(const QString& title, const QString& body, const QStringList& actions = {},
            const QVariantMap& hints = {});
/// A name as it must be put into the body of a notification: escaped when the service reads markup there.
QString notificationText(const QString& name);

/// Shows a file, selected, in the file manager; starts the file manager when it isn't running.
void showInFileManager(const QString& path);

/// Opens a package's page in the desktop's app store. Doesn't wait; a failure is told to `onFailed`.
void openInAppStore(const QString& packageId, QObject* context = nullptr,
                    const std::function<void()>& onFailed = {});
/// Whether the app store runs or could be started. Waits for the bus; for any thread.
bool hasAppStore();
/// The name under which the app store knows the package.
QString appStorePackage(const QString& packageId);

/// Whether the desktop directory holds a .desktop file with the name in its name.
bool hasDesktopShortcut(const QString& name);
bool hasDesktopShortcut(const QString& name, const QString& desktopDirectory);

/// Opens a local file or directory with what the desktop has for it.
void openLocal(const QString& path);

}  // namespace DesktopUtils
