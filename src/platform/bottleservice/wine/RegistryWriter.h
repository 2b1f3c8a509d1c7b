#pragma once

#include <QObject>
#include <QTemporaryFile>

#include "bottleservice/result/Reason.h"
#include "bottleservice/settings/RegistryChange.h"
#include "bottleservice/wine/Runners.h"

class WineCommand;

/// Lets the bottle's own Wine carry out a change of its registry (regedit, winecfg), whether something runs
/// in the bottle or not. Takes 0.2 to 2 s, in child processes. Owned by its job; lives in the main thread.
class RegistryWriter : public QObject {
    Q_OBJECT

public:
    RegistryWriter(const Runner& runner, const QString& bottlePath, const RegistryChange& change,
                   QObject* parent = nullptr);

    void start();
    /// Ends the work; finished() follows with a reason.
    void cancel();

Q_SIGNALS:
    /// Exactly once; an empty reason is success.
    void finished(const Reason& reason);

private:
    void setWindows(const QString& code);
    void importEntries();
    void run(const QStringList& arguments, const QString& input, std::function<void(const QString&)> done);

    Runner m_runner;
    QString m_bottlePath;
    RegistryChange m_change;
    QTemporaryFile m_file;
    WineCommand* m_command = nullptr;
    bool m_cancelled = false;
};
