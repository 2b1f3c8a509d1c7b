#pragma once

#include <QObject>

#include "backend/ProgramRef.h"
#include "feedback/client/ReportAccess.h"

/// What goes with a rating beside what the user chose: the program's name and the versions of it and of what
/// its bottle runs with. Collected once, so that what the user has read is what is sent. What cannot be found
/// is empty. GUI thread.
class ScoreFacts : public QObject {
    Q_OBJECT
public:
    /// `name` is that of the program's entry.
    ScoreFacts(const ProgramRef& program, const QString& name, QObject* parent = nullptr)
        : QObject(parent), m_program(program), m_appName(name) {}

    /// Does not wait. Call it once.
    void collect();
    bool isReady() const { return m_isReady; }

    const BottleVersions& versions() const { return m_versions; }
    /// Under which the store has the application, if it or another manifest has set up the bottle: entries
    /// made by an installer often have names of their own.
    const QString& appName() const { return m_appName; }
    const QString& appVersion() const { return m_appVersion; }

Q_SIGNALS:
    void ready();

private:
    void takeApplication(const QJsonObject& record);

    const ProgramRef m_program;
    QString m_appName;
    BottleVersions m_versions;
    QString m_appVersion;
    bool m_isReady = false;
};
