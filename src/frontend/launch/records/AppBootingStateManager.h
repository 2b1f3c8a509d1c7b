#pragma once

#include <QJsonObject>
#include <QMap>
#include <QObject>

#include "fenk/system/Singleton.h"

class QTimer;
class X11WaitWineProgramThread;

/// Measures the time from the start of a stored program to its first window, at most 30 s, and writes a
/// record of each start to the event log. Lives on the GUI thread, where its first use has to be; the records
/// are made one after the other in the background. Ends its threads before the application object goes.
class AppBootingStateManager : public QObject, public Fenk::Singleton<AppBootingStateManager> {
    Q_OBJECT
    friend class Fenk::Singleton<AppBootingStateManager>;

public:
    /// A watch of the same program that is under way goes on.
    void startRecording(const QString& bottleName, const QString& programId);
    /// Ends a watch without a window. Returns its seconds, or a negative number for a program that is not
    /// watched; with `report` the start is told and recorded as failed.
    float finishRecording(const QString& programId, bool report);
    bool isRecording(const QString& programId) const { return m_recordingList.contains(programId); }
    /// Forgets all watches of a bottle whose programs are being ended.
    void cancelBottle(const QString& bottleName);
    /// The end of a watch by a window, or in time. A program that is not watched leaves a warning.
    void slotsUploadEventLog(const QString& programUuid, bool successed);

    /// The record of one start; see RunEvent::build. Waits for the service, on any thread.
    QJsonObject buildRunEvent(const QString& bottleName, const QString& programId, bool successed,
                              float bootTime) const;
    /// Makes the record in the background, adds more keys, and writes it.
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

    QMap<QString, BootRecord> m_recordingList;  ///< by the program's id
    X11WaitWineProgramThread* m_waitThread;
    bool m_isStopping = false;  ///< the thread was asked to end, and may not have yet
};
