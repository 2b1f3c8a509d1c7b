#pragma once

#include <QObject>

#include "backend/ProgramRef.h"
#include "feedback/client/ReportAccess.h"

/// What goes with a rating beside what the user chose: the versions of the program and of what its bottle
/// runs with. Collected once, so that what the user has read is what is sent. What cannot be found is empty.
/// GUI thread.
class ScoreFacts : public QObject {
    Q_OBJECT
public:
    explicit ScoreFacts(const ProgramRef& program, QObject* parent = nullptr)
        : QObject(parent), m_program(program) {}

    /// Does not wait. Call it once.
    void collect();
    bool isReady() const { return m_isReady; }

    const BottleVersions& versions() const { return m_versions; }
    const QString& appVersion() const { return m_appVersion; }

Q_SIGNALS:
    void ready();

private:
    const ProgramRef m_program;
    BottleVersions m_versions;
    QString m_appVersion;
    bool m_isReady = false;
};
