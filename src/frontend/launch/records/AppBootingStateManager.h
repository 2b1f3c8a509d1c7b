#pragma once

#include <QJsonObject>
#include <QMap>
#include <QObject>

#include "fenk/system/Singleton.h"

class QTimer;
class X11WaitWineProgramThread;

/// Measures the time from the start of a stored program to its first window, at most 30 s, and writes one
/// event record for each start. Lives in the GUI thread, which must use it first; records are created one by
/// one in the background. Stops its threads before the application object is destroyed.
class AppBootingStateManager : public QObject, public Fenk::Singleton<AppBootingStateManager> {
    Q_OBJECT
    friend class Fenk::Singleton<AppBootingStateManager>;

public:
    /// Starts measuring; ignored if the program is being measured already.
    void startRecording(const QString& bottleName, const QString& programId);
    /// Stops measuring without a window. Returns the seconds so far, or a negative number if the program is
    /// not being measured; with `report` the start is signalled and recorded as failed.
    float finishRecording(const QString& programId, bool report);
    bool isRecording(const QString& programId) const { return m_recordingList.contains(programId); }
    /// Stops measuring all programs of a bottle, without records; called when its programs are ended.
    void cancelBottle(const QString& bottleName);
    /// Stops measuring because of a window, or a time-out. Logs a warning if the program is not being
    /// measured.
    void slotsUploadEventLog(const QString& programUuid, bool successed);

    /// The record of one start; see RunEvent::build. Blocks on the service; call it in any thread.
    QJsonObject buildRunEvent(const QString& bottleName, const QString& programId, bool successed,
                              float bootTime) const;
    /// Creates the record in the background, adds the keys of `more`, and writes it.
    void writeRunEvent(const QString& bottleName, const QString& programId, bool successed, float bootTime,
                       const QJsonObject& more = {});

Q_SIGNALS:
    void launchResult(const QString& programId, bool successed, float waitingTime);

private:
    struct BootRecord {
        QString bottleName;
        QTimer* timer;
    };

    AppBootingStateManager();

    void startThread();
    void onThreadFinished();
    void shutDown();

    QMap<QString, BootRecord> m_recordingList;  ///< by program id
    X11WaitWineProgramThread* m_waitThread;
    bool m_isStopping = false;  ///< the thread was asked to stop and may still run
};
