#pragma once

#include <QJsonObject>
#include <QObject>

#include "backend/PendingWork.h"
#include "programs/Program.h"

struct BusResult;

/// A bottle that the service is backing up into a file, restoring from one, or making of a portable program,
/// asked for by the user. Goes on without a window, keeps the process running until the end, and deletes
/// itself after finished(). GUI thread.
class BottleCopy : public QObject {
    Q_OBJECT
public:
    enum class Kind { BackUp, Restore, Portable };

    /// How it ended. Everything for the user, in the user's language.
    struct Outcome {
        enum class End { Done, Failed, Cancelled, Busy, Changed };
        End end = End::Failed;
        QString text;          ///< what was done, or why it was not
        QString note;          ///< what else to know; may be empty
        QJsonObject result{};  ///< the service's answer
    };

    static BottleCopy* backUp(const Program& program, const QString& file);
    static BottleCopy* restore(const QString& name, const QString& file);
    /// From a folder or a zip archive with a portable program.
    static BottleCopy* addPortable(const QString& path);

    Kind kind() const { return m_kind; }
    /// Of the program, or of the restored programs, for texts.
    QString name() const { return m_name; }
    QString file() const { return m_file; }
    void cancel();

    /// Tells the end by a notification of the desktop, for when there is no window.
    static void notify(const Outcome& outcome);

Q_SIGNALS:
    /// In bytes; the total is 0 as long as it is not known.
    void progress(qint64 done, qint64 total);
    /// Exactly once. When nobody listens, because the windows are closed, the desktop notifies the user.
    void finished(const BottleCopy::Outcome& outcome);

private:
    BottleCopy(Kind kind, const QString& name, const QString& file);
    void finish(const BusResult& result);
    /// The rule of the end, from the service's answer. A cancelling that the user did not ask for is a
    /// failure.
    Outcome outcomeOf(const BusResult& result) const;
    Outcome failureOf(const BusResult& result) const;

    Kind m_kind;
    QString m_name;
    QString m_file;
    bool m_isCancelled = false;  ///< by the user
    PendingWork::Hold m_hold;
};
