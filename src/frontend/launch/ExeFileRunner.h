#pragma once

#include <QDateTime>
#include <QObject>

#include "launch/ExeFileExecutor.h"

/// One launch as the user knows it: owns the executor, decides what a result means for the library, and tells
/// the application when it is over. Created by the application object, which keeps it under id() until
/// emit_finished; the runner deletes itself after that signal.
class ExeFileRunner : public QObject {
    Q_OBJECT
public:
    ExeFileRunner(const QString& exePath, QObject* parent);
    ExeFileRunner(const QString& bottle, const QString& programUuid, QObject* parent);

    /// 0 when the launch is under way, -1 for a bad file.
    int run();
    /// The same for a file that is to be looked at in the configuration window first.
    int runInBottlesConfigWindow();
    /// 0 when the launch is under way. -1 for an unknown bottle or program; emit_finished has then been sent.
    int runProgram();
    /// Ends the launch. May be reached several times; only the first counts. `cleanUp` removes what a failed
    /// installer left behind.
    void finish(bool cleanUp);

    QString id() const { return m_bottlesName; }
    QString displayName() const { return m_appName; }

Q_SIGNALS:
    void emit_finished();

private Q_SLOTS:
    void handleExecutorFailed(bool canFix, bool isReportSussessed);
    void handleExecutorSuccess();
    void handleWindowPopup();

private:
    enum Mode { StoredProgram = 0, File = 1, FileInConfigWindow = 2 };

    int init(const QString& path);
    int checkEntry() const;
    void connectExecutor();
    void checkLinks(bool success);
    void addFileAsync();

    ExeFileExecutor* m_executor = nullptr;
    QString m_appName;
    QDateTime m_startTime;
    int m_elapsedSeconds = 0;
    Mode m_mode = File;
    bool m_linksCreated = false;
    QString m_exePath;
    QString m_bottlesName;
    QString m_programUuid;
    bool m_succeeded = false;
    bool m_finishedOnce = false;
};
