#pragma once

#include <QObject>
#include <QString>

#include "bottleservice/wine/Runners.h"

class WineCommand;

/// Makes a Wine prefix in an empty directory with the runner's own wineboot, and leaves it at rest: registry
/// written, no process running, so that the directory may be renamed. Takes 5 to 20 s, in child processes.
class PrefixBuilder : public QObject {
    Q_OBJECT

public:
    PrefixBuilder(const Runner& runner, const QString& directory, QObject* parent = nullptr);

    void start();

    /// Ends the work; finished() follows with a sentence.
    void cancel();

    /// Empty if the directory holds a whole prefix, else a sentence that names what is missing.
    static QString check(const QString& directory);

Q_SIGNALS:
    /// Exactly once; an empty sentence is success.
    void finished(const QString& sentence);

private:
    void onBooted(const QString& sentence);
    void onStopped(bool clean);

    Runner m_runner;
    QString m_directory;
    WineCommand* m_boot = nullptr;
    QString m_fault;
    bool m_cancelled = false;
};
