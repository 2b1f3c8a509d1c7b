#include "shell/configuration/page/ConfigFoot.h"

#include <QHBoxLayout>

#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/SuggestButton.h"
#include "fenk/style/Tokens.h"
#include "shell/configuration/page/ProgramTrials.h"
#include "shell/configuration/page/UndoBar.h"

using namespace Fenk;

ConfigFoot::ConfigFoot(ProgramTrials* trials, QWidget* parent)
    : QWidget(parent),
      m_trials(trials),
      m_undo(new UndoBar),
      m_debug(new SuggestButton(tr("Debugging Runs"))),
      m_stop(new QPushButton(tr("Stop Debugging"))),
      m_toggleLogs(new IconButton("fenk-menu", tr("Toggle logs"))) {
    m_toggleLogs->setObjectName("cxb_toggle_logs_btn");
    m_toggleLogs->setCheckable(true);
    m_debug->setObjectName("debug_btn");
    m_stop->setObjectName("stop_debug_btn");
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Tokens::RingExtent, 0, Tokens::Space12, 0);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(m_toggleLogs);
    layout->addWidget(m_undo, 1);
    layout->addWidget(m_debug);
    layout->addWidget(m_stop);
    connect(m_toggleLogs, &QToolButton::clicked, this, &ConfigFoot::logToggled);
    connect(m_debug, &QPushButton::clicked, this, &ConfigFoot::runRequested);
    connect(m_stop, &QPushButton::clicked, trials, &ProgramTrials::stop);
    connect(trials, &ProgramTrials::changed, this, &ConfigFoot::refresh);
    refresh();
}

void ConfigFoot::setLogShown(bool shown) {
    m_toggleLogs->setChecked(shown);
}

void ConfigFoot::setHasProgram(bool has) {
    m_hasProgram = has;
    refresh();
}

/// One button takes the place of the other, and the focus with it.
void ConfigFoot::refresh() {
    const bool isRunning = m_trials->isRunning();
    const bool hadFocus = m_debug->hasFocus() || m_stop->hasFocus();
    m_debug->setEnabled(m_hasProgram && !m_trials->isBusy());
    m_debug->setToolTip(m_hasProgram ? QString() : tr("There is no application in this container"));
    const QString running = m_trials->runningName();
    m_stop->setToolTip(running.isEmpty() ? QString() : plainToolTip(tr("Ends %1").arg(running)));
    QPushButton* shown = isRunning ? m_stop : m_debug;
    shown->show();
    if (hadFocus)
        shown->setFocus();
    (isRunning ? m_debug : m_stop)->hide();
}
