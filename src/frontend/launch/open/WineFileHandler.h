#pragma once

#include <QMap>
#include <QObject>

struct FileAssociation;
class WineExeLaunchBanner;
class WineLauncher;

/// Opens one document or link with the Windows program that is registered for it in the bottle, and shows a
/// banner for three seconds. The program is not monitored: Wine's start.exe hands the document over and
/// exits. Created by the command line for one open(). GUI thread only.
class WineFileHandler : public QObject {
    Q_OBJECT
public:
    /// `extension` has its dot; for a link it is the scheme.
    WineFileHandler(const QString& bottle, const QString& extension, const QString& file);

    /// Always returns -1. Runs an event loop while the banner is shown, in which other documents can be
    /// opened; opening the same one raises its banner. Shows nothing if no program is registered. What was
    /// started keeps running when this process exits.
    int open();

private:
    void fill(WineExeLaunchBanner* banner, const FileAssociation& association) const;
    void stop(WineLauncher* launcher);
    void closeBanner();

    /// By the path of the document being opened.
    static QMap<QString, WineExeLaunchBanner*> s_banners;

    QString m_bottleName;
    QString m_extension;
    QString m_filePath;
};
