#include "programs/AppItemWidget.h"

#include <QApplication>

#include "launch/LaunchWindows.h"
#include "launch/records/FailedStarts.h"
#include "programs/AppItemWidgetStateManager.h"
#include "programs/OrphanedBottles.h"
#include "programs/ProgramRuns.h"
#include "programs/ProgramStarts.h"
#include "programs/RunStateButton.h"

AppItemWidget::AppItemWidget(const ProgramPtr& program, QWidget* parent)
    : QWidget(parent), m_program(program), m_runButton(new RunStateButton(this)) {
    connect(m_runButton, &QPushButton::clicked, this, [this] {
        // The second click of a double click would undo the first.
        if (m_sinceClick.isValid() && m_sinceClick.elapsed() < QApplication::doubleClickInterval())
            return;
        m_sinceClick.start();
        if (isRunning())
            onStopButtonClicked();
        else if (failedStart())
            repair();
        else
            onStartButtonClicked(false);
    });
    AppItemWidgetStateManager::instance()->watchItem(ref(), this, [this] { refreshRunState(); });
    connect(OrphanedBottles::instance(), &OrphanedBottles::changed, this, [this] { refreshRunState(); });
}

bool AppItemWidget::isRunning() const {
    return ProgramRuns::instance()->isRunning(ref());
}

const FailedStart* AppItemWidget::failedStart() const {
    return isRunning() || isLost() ? nullptr : FailedStarts::instance()->find(ref().bottle, ref().uuid);
}

const OrphanedBottle* AppItemWidget::orphan() const {
    return OrphanedBottles::instance()->find(ref().bottle);
}

/// Its files have gone with its package, so that there is nothing to start or to repair.
bool AppItemWidget::isLost() const {
    const OrphanedBottle* bottle = orphan();
    return bottle && bottle->lostPrograms.contains(ref().uuid);
}

void AppItemWidget::refreshRunState() {
    m_runButton->setState(isRunning()     ? RunStateButton::Running
                          : failedStart() ? RunStateButton::Repair
                                          : RunStateButton::Idle);
    const QString words = isRunning() ? tr("Quit %1") : failedStart() ? tr("Repair %1") : tr("Run %1");
    m_runButton->setAccessibleDescription(words.arg(m_program->name));
}

void AppItemWidget::activate() {
    if (!isRunning()) {
        onStartButtonClicked(false);
        return;
    }
    const QString name = m_program->name;
    ProgramRuns::instance()->raiseWindow(ref(), this, [this, name](bool found) {
        if (!found)
            Q_EMIT message(tr("%1 is running, and has no window yet.").arg(name), false);
    });
}

void AppItemWidget::repair() {
    const auto& open = LaunchWindows::instance().repair;
    const FailedStart* failed = failedStart();
    if (open && failed)
        open(ref(), failed->components);
}

void AppItemWidget::onStartButtonClicked(bool inTerminal) {
    if (isLost())
        Q_EMIT packageMissing();
    else
        ProgramStarts::instance()->start(*m_program, inTerminal);
}

void AppItemWidget::onStopButtonClicked() {
    ProgramStarts::instance()->stop(ref());
}
