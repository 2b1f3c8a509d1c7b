#include "shell/library/AppItemWidget.h"

#include <QApplication>

#include "shell/library/AppItemWidgetStateManager.h"
#include "shell/library/RunStateButton.h"

AppItemWidget::AppItemWidget(const ProgramPtr& program, QWidget* parent)
    : QWidget(parent), m_program(program), m_runButton(new RunStateButton(this)) {
    connect(m_runButton, &QPushButton::clicked, this, [this] {
        // The second half of a double click would undo the first.
        if (m_sinceClick.isValid() && m_sinceClick.elapsed() < QApplication::doubleClickInterval())
            return;
        m_sinceClick.start();
        if (isRunning())
            onStopButtonClicked();
        else
            onStartButtonClicked(false);
    });
    AppItemWidgetStateManager::instance()->watchItem(ref().uuid, this);
}

bool AppItemWidget::isRunning() const {
    return AppItemWidgetStateManager::instance()->isRunning(ref().uuid);
}

void AppItemWidget::refreshRunState() {
    m_runButton->setState(isRunning() ? RunStateButton::Running : RunStateButton::Idle);
    m_runButton->setAccessibleDescription(isRunning() ? tr("Quit %1").arg(m_program->name)
                                                      : tr("Run %1").arg(m_program->name));
}

void AppItemWidget::onStartButtonClicked(bool inTerminal) {
    AppItemWidgetStateManager::instance()->start(*m_program, inTerminal);
}

void AppItemWidget::onStopButtonClicked() {
    AppItemWidgetStateManager::instance()->stop(ref());
}
