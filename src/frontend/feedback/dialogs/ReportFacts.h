#pragma once

#include <QJsonObject>
#include <QObject>

#include "feedback/client/LogUpload.h"
#include "feedback/client/ReportAccess.h"

/// What goes with a report beside what the user typed: the versions that a bottle runs with, the machine's
/// hardware and copies of the bottle's logs. Collected once, so that what the user has read is what is sent.
/// What cannot be found is empty, also where the background service does not answer in time. GUI thread.
class ReportFacts : public QObject {
    Q_OBJECT
public:
    /// An empty name stands for this application itself, which has no bottle.
    explicit ReportFacts(const QString& bottleName, QObject* parent = nullptr)
        : QObject(parent), m_bottle(bottleName) {}

    /// Does not wait; does nothing when it was called before.
    void collect();
    bool isReady() const { return m_isStarted && m_left == 0; }

    const BottleVersions& versions() const { return m_versions; }
    const QJsonObject& hardware() const { return m_hardware; }
    const LogUpload::Copies& logs() const { return m_logs; }
    /// The files of logs(), by name.
    const QStringList& logFiles() const { return m_logFiles; }
    /// There is a bottle, and nothing of it could be copied.
    bool lacksLogs() const { return isReady() && !m_bottle.isEmpty() && !m_logs; }

Q_SIGNALS:
    void ready();

private:
    void collectBottle();
    void endPart();

    const QString m_bottle;
    BottleVersions m_versions;
    QJsonObject m_hardware;
    LogUpload::Copies m_logs;
    QStringList m_logFiles;
    bool m_isStarted = false;
    int m_left = 0;  ///< parts that are being collected
};
