#include "launch/open/WineFileHandler.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QEventLoop>
#include <QIcon>
#include <QPointer>
#include <QTimer>

#include "backend/BottleUtils.h"
#include "backend/ProgramRecord.h"
#include "fenk/style/Theme.h"
#include "launch/banner/WineExeLaunchBanner.h"
#include "launch/icons/IconFile.h"
#include "launch/open/FileAssociation.h"
#include "launch/script/WineLauncher.h"

namespace {

constexpr int BannerMs = 3000;
constexpr int IconSize = 20;

/// The launcher has no owner: its destruction would kill a script that has not started Wine yet. If it still
/// runs when this process exits, it keeps running.
WineLauncher* makeLauncher(const QString& bottle, QObject* parent) {
    auto* launcher = new WineLauncher(bottle, parent);
    QObject::connect(launcher, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), launcher,
                     [launcher](int code) {
                         if (code != 0)
                             qWarning() << "opening has ended with" << code << launcher->arguments();
                         launcher->deleteLater();
                     });
    QObject::connect(launcher, &QProcess::errorOccurred, launcher, [launcher](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            qWarning() << "can't start" << launcher->program() << launcher->errorString();
            launcher->deleteLater();
        }
    });
    return launcher;
}

}  // namespace

QMap<QString, WineExeLaunchBanner*> WineFileHandler::s_banners;

WineFileHandler::WineFileHandler(const QString& bottle, const QString& extension, const QString& file)
    : m_bottleName(bottle), m_extension(extension), m_filePath(file) {}

int WineFileHandler::open() {
    if (WineExeLaunchBanner* shown = s_banners.value(m_filePath)) {
        shown->show();
        shown->raise();
        shown->activateWindow();
        return -1;
    }
    const auto association = FileAssociation::find(BottleUtils::bottlePath(m_bottleName), m_extension);
    if (!association)
        return -1;
    auto* banner = new WineExeLaunchBanner;
    fill(banner, *association);
    s_banners.insert(m_filePath, banner);
    const QPointer<WineLauncher> launcher = makeLauncher(m_bottleName, banner);
    const QByteArray mark = QCryptographicHash::hash(m_filePath.toUtf8(), QCryptographicHash::Md5).toHex();
    // The launcher's own environment replaces this, so the mark never reaches the program.
    launcher->setEnvironment({"_CXB_WINE_PROGRAM_UUID", "__open__" + mark});

    QEventLoop loop;
    // Not after the loop: the loops of later documents run inside it and may last longer.
    QTimer::singleShot(BannerMs, Qt::PreciseTimer, &loop, [&] {
        closeBanner();
        loop.quit();
    });
    connect(banner, &WineExeLaunchBanner::stopRunning, &loop, [&] {
        stop(launcher);
        closeBanner();
        loop.quit();
    });
    banner->show();
    launcher->launchExe("start.exe", {"/ProgIDOpen", association->progId, m_filePath});
    loop.exec();
    closeBanner();
    return -1;
}

void WineFileHandler::fill(WineExeLaunchBanner* banner, const FileAssociation& association) const {
    banner->setAppName(association.displayName());
    banner->setStatus(tr("Launching"));
    banner->setDescription(tr("Launching %1...").arg(m_filePath.split('\\').last()));
    const QIcon icon = IconFile::read(association.icon);
    banner->setIcon(icon.isNull() ? Fenk::Theme::icon(ProgramRecord::iconFallback())
                                  : QIcon(icon.pixmap(IconSize)));
}

/// Cancels the opening: the script passes the signal on to Wine's start.exe and what that has just started. A
/// program that has received the document already and everything else in the bottle keep running.
void WineFileHandler::stop(WineLauncher* launcher) {
    const bool isRunning = launcher && launcher->state() != QProcess::NotRunning;
    qInfo() << "opening" << m_filePath << (isRunning ? "is stopped" : "can't be stopped any more");
    if (isRunning)
        launcher->terminate();
}

void WineFileHandler::closeBanner() {
    WineExeLaunchBanner* banner = s_banners.take(m_filePath);
    if (!banner)
        return;
    banner->allowClose();
    // Close before deleting: the application may wait for its last window to be closed.
    banner->close();
    banner->deleteLater();
}
