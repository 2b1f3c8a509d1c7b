#include "shell/portable/PortableProgram.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileInfo>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "backend/InBackground.h"
#include "backend/ProgramRecord.h"
#include "fenk/window/Dialog.h"
#include "shell/configuration/executables/ChooseExecutableDialog.h"
#include "shell/library/BottleCopyDialog.h"

namespace {

constexpr int LongestName = 60;

/// Of the folder or archive, for texts.
QString shownName(const QString& path) {
    const QString name = QFileInfo(path).fileName().simplified();
    return name.size() <= LongestName ? name : name.left(LongestName) + QChar(0x2026);
}

}  // namespace

PortableProgram* PortableProgram::start(const QString& path, QWidget* over) {
    return new PortableProgram(path, over);
}

PortableProgram::PortableProgram(const QString& path, QWidget* over)
    : QObject(qApp), m_path(path), m_over(over->window()) {
    BottleCopy* copy = BottleCopy::addPortable(path);
    connect(copy, &BottleCopy::finished, this, &PortableProgram::onCopied);
    m_progress = new BottleCopyDialog(copy, m_over);
    m_progress->open();
}

bool PortableProgram::hasWindow() const {
    return m_over && m_over->isVisible();
}

void PortableProgram::onCopied(const BottleCopy::Outcome& outcome) {
    m_bottle = outcome.result["bottle"].toString();
    m_note = outcome.note;
    if (outcome.end != BottleCopy::Outcome::End::Done || m_bottle.isEmpty()) {
        if (!m_over)
            BottleCopy::notify(outcome);  // the dialog went with its window
        end();
        return;
    }
    m_entered.insert(outcome.result["program"].toString());
    if (m_progress)
        connect(m_progress, &QDialog::finished, this, &PortableProgram::removeBottle);
    BottlesConfig::instance()->watchBottle(
        m_bottle, this, [this, copied = outcome.result](const BusResult& result) {
            if (!result.ok)
                qWarning().noquote() << "cannot read the entries of" << m_bottle << result.errorMessage;
            const PortableCandidates::Place place{copied["path"].toString(), copied["folder"].toString()};
            look(place, BottleRecord::programs(result.object()));
        });
}

void PortableProgram::look(const PortableCandidates::Place& place, const QJsonObject& entries) {
    inBackground(
        this, [place, entries, stop = m_stop] { return PortableCandidates::in(place, entries, *stop); },
        [this](const QVector<Executable>& programs) { onFound(programs); });
}

void PortableProgram::onFound(const QVector<Executable>& programs) {
    if (m_isUnwanted)
        return;
    m_programs = programs;
    if (m_progress) {
        m_progress->disconnect(this);
        m_progress->done(0);
    }
    if (programs.isEmpty()) {
        tell(tr("%1 was not added.").arg(shownName(m_path)),
             tr("None of the files in it is a program that could be started."));
        removeBottle();
    } else if (hasWindow()) {
        offer();
    } else {
        keepLikely();
    }
}

void PortableProgram::offer() {
    m_dialog =
        new ChooseExecutableDialog(tr("Choose Programs of %1").arg(shownName(m_path)), m_programs, m_over);
    if (!m_note.isEmpty())
        m_dialog->setMessage(m_dialog->message() + "\n\n" + m_note);
    connect(m_dialog, &ChooseExecutableDialog::programsChosen, this, [this](const Records& records) {
        m_isDecided = true;
        enter(records, 0);
    });
    connect(m_dialog, &ChooseExecutableDialog::cancelled, this, [this] {
        m_isDecided = true;
        removeBottle();
    });
    connect(m_dialog, &QObject::destroyed, this, [this] {
        if (!m_isDecided)
            keepLikely();
    });
    m_dialog->open();
}

void PortableProgram::keepLikely() {
    m_isDecided = true;
    enter({ExecutableList::entryOf(m_programs.first())}, 0);
}

void PortableProgram::enter(const Records& records, int index) {
    if (index == records.size()) {
        removeOthers(records);
        return;
    }
    const auto add = [bottle = m_bottle, record = records[index]] {
        return BottlesConfig::instance()->updateExternalProgram(bottle, record);
    };
    changeServiceAsync(
        this, add, [this, records, index](const BusResult& result) { onEntered(result, records, index); });
}

void PortableProgram::onEntered(const BusResult& result, const Records& records, int index) {
    if (m_isUnwanted)
        return;
    if (result.ok) {
        m_entered.insert(ProgramRecord::id(records[index]));
        enter(records, index + 1);
        return;
    }
    const QString name = ProgramRecord::name(records[index]);
    qWarning().noquote() << "can't add" << name << "to" << m_bottle << result.errorMessage;
    if (m_dialog) {
        // The user can try again, or cancel.
        m_isDecided = false;
        m_dialog->showFailure(tr("%1 could not be added: %2").arg(name, result.errorText()));
        return;
    }
    tell(tr("%1 could not be added: %2").arg(name, result.errorText()), {});
    removeBottle();
}

/// The service's guess, and what was entered before a failure after which the user chose anew.
void PortableProgram::removeOthers(const Records& chosen) {
    QSet<QString> others = m_entered;
    others.remove({});
    for (const QJsonObject& record : chosen)
        others.remove(ProgramRecord::id(record));
    const auto remove = [bottle = m_bottle, others] {
        BusResult outcome;
        outcome.ok = true;
        for (const QString& id : others) {
            const BusResult result = BottlesConfig::instance()->removeExternalProgram(bottle, id);
            if (!result.ok)
                outcome = result;
        }
        return outcome;
    };
    changeServiceAsync(this, remove, [this, chosen](const BusResult& result) {
        if (m_isUnwanted)
            return;
        if (!result.ok) {
            qWarning().noquote() << "cannot remove an entry of" << m_bottle << result.errorMessage;
            tell(tr("The library also shows a program of %1 that was not chosen.").arg(shownName(m_path)),
                 tr("It could not be removed: %1").arg(result.errorText()));
        }
        onAllDone(chosen);
    });
}

void PortableProgram::onAllDone(const Records& records) {
    Q_EMIT added();
    if (m_dialog) {
        m_dialog->done(1);
        Q_EMIT startRequested({m_bottle, ProgramRecord::id(records.first())});
    } else {
        tell(tr("In the library: %1").arg(ProgramRecord::name(records.first())), m_note);
    }
    end();
}

/// It is new, and has what is still where the user had it.
void PortableProgram::removeBottle() {
    m_isUnwanted = true;
    *m_stop = true;
    const auto remove = [bottle = m_bottle] {
        return BottlesConfig::instance()->deleteBottleAndWait(bottle);
    };
    changeServiceAsync(this, remove, [this](const BusResult& result) {
        if (!result.ok) {
            qWarning().noquote() << "cannot remove" << m_bottle << result.errorMessage;
            tell(tr("The copy of %1 stays in the library.").arg(shownName(m_path)),
                 tr("It could not be removed: %1").arg(result.errorText()));
        }
        end();
    });
}

void PortableProgram::tell(const QString& text, const QString& note) const {
    if (!hasWindow()) {
        inBackground(
            qApp, [text, note] { return DesktopUtils::notify(text, DesktopUtils::notificationText(note)); },
            [hold = PendingWork::instance()->hold()](bool) {});
        return;
    }
    auto* dialog = new Fenk::Dialog(text, note, m_over);
    dialog->setObjectName("portable_message");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->addButton(tr("Close"), true);
    dialog->open();
}

void PortableProgram::end() {
    m_hold.reset();
    deleteLater();
}
