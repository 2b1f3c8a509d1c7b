#pragma once

#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QWidget>
#include <atomic>
#include <memory>

#include "backend/PendingWork.h"
#include "backend/ProgramRef.h"
#include "shell/library/BottleCopy.h"
#include "shell/portable/PortableCandidates.h"

class BottleCopyDialog;
class ChooseExecutableDialog;
struct BusResult;

/// A portable program, a folder or a zip archive, that becomes part of the library: the background service
/// copies it into a bottle of its own, the user picks among its programs, these are entered and the first is
/// started. The service copies, not this process, since it removes what is half made also after a crash and
/// shows a bottle only when it is whole. A cancel at any point leaves nothing, since the bottle is new and
/// holds only the copy. Without its window it goes on, enters the likely program and notifies the user.
/// Deletes itself at the end. GUI thread; nothing waits.
class PortableProgram : public QObject {
    Q_OBJECT
public:
    /// Shows its progress over the window of `over`.
    static PortableProgram* start(const QString& path, QWidget* over);
    ~PortableProgram() override { *m_stop = true; }

Q_SIGNALS:
    /// A program was entered that the user wants to start.
    void startRequested(const ProgramRef& program);
    /// Its programs are in the library.
    void added();

private:
    using Records = QVector<QJsonObject>;

    PortableProgram(const QString& path, QWidget* over);
    void onCopied(const BottleCopy::Outcome& outcome);
    void look(const PortableCandidates::Place& place, const QJsonObject& entries);
    void onFound(const QVector<Executable>& programs);
    void offer();
    bool hasWindow() const;
    /// Enters the rest of the records, one after the other.
    void enter(const Records& records, int index);
    void onEntered(const BusResult& result, const Records& records, int index);
    /// Then ends.
    void removeOthers(const Records& chosen);
    void onAllDone(const Records& records);
    void keepLikely();
    /// Then ends.
    void removeBottle();
    void tell(const QString& text, const QString& note) const;
    void end();

    const QString m_path;
    QPointer<QWidget> m_over;
    QPointer<BottleCopyDialog> m_progress;
    QPointer<ChooseExecutableDialog> m_dialog;
    QString m_bottle;
    QString m_note;           ///< what was not copied
    QSet<QString> m_entered;  ///< ids; at first that of the service's own entry
    QVector<Executable> m_programs;
    bool m_isDecided = false;  ///< the user has chosen or cancelled
    bool m_isUnwanted = false;
    std::shared_ptr<std::atomic_bool> m_stop = std::make_shared<std::atomic_bool>(false);  ///< the search
    PendingWork::Hold m_hold = PendingWork::instance()->hold();
};
