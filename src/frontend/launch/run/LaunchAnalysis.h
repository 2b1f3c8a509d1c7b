#pragma once

#include <QObject>

#include "launch/MsgType.h"
#include "launch/repair/Diagnosis.h"
#include "launch/repair/FailureFacts.h"
#include "launch/run/LaunchVerdict.h"
#include "launch/run/WatchedRun.h"

class LaunchRepair;
class LaunchedFile;

/// Finds out what the end of one start means: reads Wine's log, has the service look for damage of the
/// bottle, and says why the program failed and what may be done about it. Owned by an ExeFileExecutor, which
/// makes one for each end; GUI thread.
///
/// start() blocks while the log is read (at most 10 MiB), and ends once, in done(). A service that does not
/// answer leaves damage unknown. The log of a public bottle is not read, since such a bottle is not repaired.
class LaunchAnalysis : public QObject {
    Q_OBJECT
public:
    struct Launch {
        QString bottle;
        QString name;  ///< of the program, for the user
        bool isFirstRun = true;
    };

    /// File and repair must outlive this object; the repair says what was tried before and what may be.
    LaunchAnalysis(const Launch& launch, LaunchedFile* file, const LaunchRepair* repair, const RunEnd& end,
                   QObject* parent);

    void start();

    // From done() on.
    const Diagnosis& diagnosis() const { return m_diagnosis; }
    /// Why the program failed, when no repair is left to offer.
    Diagnosis finalDiagnosis() const;
    /// The program came up, whatever was wrong with it later on.
    bool hasComeUp() const { return m_hasComeUp; }
    const QStringList& components() const { return m_failure.components; }  ///< that a repair should install
    const QStringList& fonts() const { return m_failure.fonts; }            ///< the same

Q_SIGNALS:
    void emitMsg(const QString& text, MsgType recordType = MsgLine);
    void done(const LaunchVerdict& verdict);

private:
    bool isPublic() const;
    LaunchFacts facts() const;
    void readLog();
    void addMissingComponents();
    void askForSize();
    void lookForDamage();
    void decide();
    void addPossibleRepairs();

    Launch m_launch;
    LaunchedFile* m_file;
    const LaunchRepair* m_repair;
    RunEnd m_end;
    FailureFacts m_failure;
    bool m_installFailed = false;  ///< says the log
    bool m_hasComeUp = false;
    Diagnosis m_diagnosis;
};
