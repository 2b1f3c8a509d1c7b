#pragma once

#include <QString>
#include <QStringList>

/// Copies of the files that explain a problem with a program, for an archive of bounded size. Scrubbed of
/// what says whose they are (LogScrub). For any thread but the GUI's.
namespace LogCollection {

constexpr qint64 MaximumLogBytes = 2097152;        ///< of one file; of a longer one the end is kept
constexpr qint64 MaximumBytes = 32 * 1024 * 1024;  ///< of all copies; the newest logs come first

struct Sources {
    QString bottlePath;
    QString serviceDirectory;      ///< where the background service has its logs
    QString applicationDirectory;  ///< where this program has its log

    /// Those of this user.
    static Sources of(const QString& bottlePath);
};

/// Copies bottle.yml and the logs; links, which may lead anywhere, are left out. Failures are logged.
void gather(const Sources& sources, const QString& directory);

/// What a rating brings with it: copies the bottle's bottle.yml, and the files of a private directory as they
/// are. Returns the paths of the latter. Copies nothing, with a line in the log, without a bottle.yml.
QStringList gatherForRating(const QString& bottleName, const QString& bottlePath, const QString& suggestions,
                            const QString& directory);

}  // namespace LogCollection
