#include "shell/portable/PortableProgram.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileInfo>

#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "backend/InBackground.h"
#include "backend/ProgramRecord.h"
#include "fenk/window/Dialog.h"
#include "shell/configuration/executables/ChooseExecutableDialog.h"
#include "shell/library/BottleCopyDialog.h"
#include "shell/portable/PortableCandidates.h"

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
    m_provisional = outcome.result["program"].toString();
    if (outcome.end != BottleCopy::Outcome::End::Done || m_bottle.isEmpty()) {
        if (!m_over)
            BottleCopy::notify(outcome);  // the dialog went with its window
        end({});
        return;
    }
    if (m_progress)
        connect(m_progress, &QDialog::finished, this, [this](int result) { m_isDecided = result == 0; });
    const QString folder = outcome.result["folder"].toString();
    const QString name = folder.section('\\', -1);
    const QString directory = outcome.result["path"].toString() + "/drive_c/Program Files/" + name;
    inBackground(
        this, [directory, folder] { return PortableCandidates::in(directory, folder); },
        [this](const QVector<Executable>& programs) { onFound(programs); });
}

void PortableProgram::onFound(const QVector<Executable>& programs) {
    m_programs = programs;
    if (m_isDecided) {
        removeBottle();
        return;
    }
    if (m_progress)
        m_progress->done(-1);
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
    connect(m_dialog, &ChooseExecutableDialog::programsChosen, this,
            [this](const QVector<QJsonObject>& records) {
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
    enter({m_programs.first().record}, 0);
}

void PortableProgram::enter(const QVector<QJsonObject>& records, int index) {
    if (index == records.size()) {
        onAllEntered(records);
        return;
    }
    const auto add = [bottle = m_bottle, record = records[index]] {
        return BottlesConfig::instance()->updateExternalProgram(bottle, record);
    };
    changeServiceAsync(
        this, add, [this, records, index](const BusResult& result) { onEntered(result, records, index); });
}

void PortableProgram::onEntered(const BusResult& result, const QVector<QJsonObject>& records, int index) {
    if (!m_hold)
        return;  // cancelled meanwhile
    if (result.ok) {
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

void PortableProgram::onAllEntered(const QVector<QJsonObject>& records) {
    removeProvisional();
    const ProgramRef first{m_bottle, ProgramRecord::id(records.first())};
    if (m_dialog) {
        m_dialog->done(1);
        Q_EMIT startRequested(first);
    } else {
        tell(tr("In the library: %1").arg(ProgramRecord::name(records.first())), {});
    }
    end(m_bottle);
}

/// The entry that the service has made itself; no window shows it yet.
void PortableProgram::removeProvisional() {
    if (m_provisional.isEmpty())
        return;
    const auto remove = [bottle = m_bottle, id = m_provisional] {
        return BottlesConfig::instance()->removeExternalProgram(bottle, id);
    };
    changeServiceAsync(qApp, remove, [bottle = m_bottle](const BusResult& result) {
        if (!result.ok)
            qWarning().noquote() << "cannot remove the first entry of" << bottle << result.errorMessage;
    });
}

/// It is new, and has what is still where the user had it.
void PortableProgram::removeBottle() {
    const auto remove = [bottle = m_bottle] {
        return BottlesConfig::instance()->deleteBottleAndWait(bottle);
    };
    changeServiceAsync(qApp, remove, [bottle = m_bottle](const BusResult& result) {
        if (!result.ok)
            qWarning().noquote() << "cannot remove" << bottle << result.errorMessage;
    });
    end({});
}

void PortableProgram::tell(const QString& text, const QString& note) const {
    if (!hasWindow()) {
        inBackground(
            qApp, [text, note] { return DesktopUtils::notify(text, DesktopUtils::notificationText(note)); },
            [hold = PendingWork::instance()->hold()](bool) {});
        return;
    }
    auto* dialog = new Fenk::Dialog(text, note, m_over);
    dialog->setObjectName("portable_failure");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->addButton(tr("Close"), true);
    dialog->open();
}

void PortableProgram::end(const QString& bottle) {
    m_hold.reset();
    deleteLater();
    Q_EMIT finished(bottle);
}
