#pragma once

#include <QString>

/// Copies of the files that explain a problem with a program, for an archive of bounded size. Scrubbed of
/// what says whose they are (LogScrub). For any thread but the GUI's.
namespace LogCollection {

constexpr qint64 MaximumLogBytes = 2097152;        ///< of one file; of a longer one the end is kept
constexpr qint64 MaximumBytes = 32 * 1024 * 1024;  ///< of all copies; the newest logs come first
constexpr int MaximumFiles = 500;                  ///< logs; programs in a bottle can make any number

struct Sources {
    QString bottlePath;
    QString serviceDirectory;      ///< where the background service has its logs
    QString applicationDirectory;  ///< where this program has its log

    /// Those of this user.
    static Sources of(const QString& bottlePath);
};

/// Copies bottle.yml, all files of the bottle's directory of logs, and the other logs; links, which may lead
/// anywhere, are left out. Failures are logged.
void gather(const Sources& sources, const QString& directory);

/// What a rating brings with it: copies the bottle's bottle.yml, or, with a line in the log, nothing.
void gatherConfiguration(const QString& bottleName, const QString& bottlePath, const QString& directory);

}  // namespace LogCollection
