#pragma once

#include <QMap>
#include <QObject>

struct FileAssociation;
class WineExeLaunchBanner;
class WineLauncher;

/// Opens one document or link with the Windows program that the bottle has registered for it, and shows a
/// banner meanwhile. Nobody watches what becomes of it: Wine's start.exe hands the document over and ends.
/// Made by the command line, for one open(). Main thread only.
class WineFileHandler : public QObject {
    Q_OBJECT
public:
    /// `extension` has its dot; for a link it is the scheme.
    WineFileHandler(const QString& bottle, const QString& extension, const QString& file);

    /// Always -1. Runs an event loop for the three seconds of the banner, in which other documents may be
    /// opened; the same one only raises its banner. Without a program for the document nothing is shown. What
    /// has been started goes on when this process ends, also at once.
    int open();

private:
    void fill(WineExeLaunchBanner* banner, const FileAssociation& association) const;
    void stop(WineLauncher* launcher);
    void closeBanner();

    /// Of the documents being opened, by their path.
    static QMap<QString, WineExeLaunchBanner*> s_banners;

    QString m_bottleName;
    QString m_extension;
    QString m_filePath;
};
