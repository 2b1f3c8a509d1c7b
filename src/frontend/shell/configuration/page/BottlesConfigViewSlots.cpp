// What the buttons, menus and links of the window do; BottlesConfigView.cpp makes and fills it.
#include <QAbstractButton>
#include <QDebug>
#include <QDir>
#include <QFileDialog>

#include "backend/BottleLogs.h"
#include "backend/BottleRecord.h"
#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/style/Theme.h"
#include "fenk/window/Dialog.h"
#include "launch/LaunchWindows.h"
#include "launch/run/BottleTasks.h"
#include "shell/configuration/executables/ChooseExecutableDialog.h"
#include "shell/configuration/hints/CustomSPitter.h"
#include "shell/configuration/page/AppEntryButton.h"
#include "shell/configuration/page/BasicPage.h"
#include "shell/configuration/page/BottleCommands.h"
#include "shell/configuration/page/BottlePrograms.h"
#include "shell/configuration/page/BottleSettings.h"
#include "shell/configuration/page/BottlesConfigView.h"
#include "shell/configuration/page/ConfigFoot.h"
#include "shell/configuration/page/ConfigPages.h"
#include "shell/configuration/page/DebuggingLogsFrame.h"
#include "shell/configuration/page/EntryMenu.h"
#include "shell/configuration/page/HintNavigator.h"
#include "shell/configuration/page/ProgramFindings.h"
#include "shell/configuration/page/ProgramTrials.h"
#include "shell/configuration/page/SettingControlRow.h"
#include "shell/configuration/page/ToolsPage.h"
#include "widgets/FileChoice.h"

void BottlesConfigView::onConfigurePageToggled(int page) {
    m_pages->showPage(page);
}

void BottlesConfigView::onAppEntryBtnClicked(AppEntryButton* button) {
    changeSelectedIndex(button);
}

void BottlesConfigView::changeSelectedIndex(AppEntryButton* button) {
    changeSelectedIndex(m_programs->list().indexOf(button->id()));
}

void BottlesConfigView::changeSelectedIndex(int index) {
    m_programs->select(index);
}

void BottlesConfigView::syncCurrentAppEntry() {
    const ProgramEntry* entry = m_programs->list().currentEntry();
    if (entry)
        BottlesConfig::instance()->syncExternalProgram(m_bottle, entry->recordWithId());
    else
        qWarning("Entry not found");
}

void BottlesConfigView::onAppEntryBtnRightClicked(AppEntryButton* button) {
    showEntryMenu(button, button->mapToGlobal(button->rect().center()));
}

/// The menu acts on the program that it was opened for, also when another one is current by then.
void BottlesConfigView::showEntryMenu(AppEntryButton* button, const QPoint& at) {
    changeSelectedIndex(button);
    auto* menu = new EntryMenu(m_programs, !m_trials->isBusy(), this);
    using Self = BottlesConfigView;
    const auto onEntry = [this, id = button->id()](void (Self::*act)()) {
        return [this, id, act] {
            const int index = m_programs->list().indexOf(id);
            changeSelectedIndex(index);
            if (index >= 0)
                (this->*act)();
        };
    };
    connect(menu, &EntryMenu::terminalRequested, this, onEntry(&Self::onOpenInTerminalActionTriggered));
    connect(menu, &EntryMenu::folderRequested, this, onEntry(&Self::onOpenFolderActionTriggered));
    connect(menu, &EntryMenu::internetSettingsRequested, this, onEntry(&Self::onOpenInternalOptsTriggered));
    connect(menu, &EntryMenu::deleteRequested, this, onEntry(&Self::onDeleteActionTriggered));
    menu->popup(at);
}

void BottlesConfigView::onOpenInTerminalActionTriggered() {
    startRun(true);
}

void BottlesConfigView::onOpenFolderActionTriggered() {
    BottleUtils::openProgramFolder(m_bottle, m_programs->currentRef().uuid);
}

void BottlesConfigView::onOpenInternalOptsTriggered() {
    BottleTasks::openInternetOptions(m_bottle);
}

void BottlesConfigView::onDeleteActionTriggered() {
    askToDeleteEntry(m_programs, this);
}

void BottlesConfigView::slotsOpenLogsDir() {
    const QString path = BottleRecord::path(m_settings->record());
    if (path.isEmpty())
        return;
    // Before the first run there is none.
    const QString folder = BottleLogs::directory(path);
    if (QDir().mkpath(folder))
        DesktopUtils::openLocal(folder);
    else
        showError(tr("The folder %1 cannot be created.").arg(folder));
}

void BottlesConfigView::slotsimportRegs() {
    BottleTasks::importRegistry(this, m_bottle);
}

void BottlesConfigView::showLogs() {
    if (m_logs->isHidden())
        slotstoggleLogsView();
}

void BottlesConfigView::slotstoggleLogsView() {
    const bool shows = m_logs->isHidden();
    m_logs->setVisible(shows);
    m_foot->setLogShown(shows);
    if (!shows)
        return;
    if (!m_hasShownLogs)
        m_splitter->setSizes({m_splitter->height() - LogHeight, LogHeight});
    m_hasShownLogs = true;
    m_findings->showLast();
}

void BottlesConfigView::explainFailure() {
    showLogs();
    m_findings->readAgain();
}

void BottlesConfigView::slotsAppendLogs(const QString& text) {
    m_findings->append(text);
}

void BottlesConfigView::slotsHandleLogsAnchorClicked(const QUrl& anchor) {
    m_hintLinks->follow(anchor);
}

void BottlesConfigView::slotsStopInstallingDeps() {
    BottlesConfig* service = BottlesConfig::instance();
    service->cancelInstallingDependency(m_bottle, service, [](const BusResult& answer) {
        if (!answer.ok)
            qWarning().noquote() << "Failed to cancel installing dependencies:" << answer.errorMessage;
    });
}

void BottlesConfigView::slotsUpdateMemOptimizedSwitchButtonStates(int) {
    m_basic->refresh();
}

void BottlesConfigView::onNtSyncSwitchBtnClicked() {
    auto* button = qobject_cast<QAbstractButton*>(m_basic->row(Setting::NtSync)->control());
    choose(Setting::NtSync, button->isChecked());
}

void BottlesConfigView::onAddEntryButtonClicked() {
    auto* dialog = new ChooseExecutableDialog(tr("Adding application shortcuts"), m_bottle, this);
    connect(dialog, &ChooseExecutableDialog::programChosen, m_programs, &BottlePrograms::addFound);
    connect(dialog, &ChooseExecutableDialog::fileRequested, this, &BottlesConfigView::chooseFile);
    dialog->open();
}

void BottlesConfigView::chooseFile() {
    const QString path = BottleRecord::path(m_settings->record());
    QFileDialog* dialog =
        FileChoice::make(FileChoice::Kind::Program, this, tr("Adding application shortcuts"),
                         path + "/drive_c", tr("Windows Application Programs (*.exe *.msi *.bat)"));
    dialog->setObjectName("add_entry_dialog");
    connect(dialog, &QFileDialog::fileSelected, m_programs,
            [programs = m_programs](const QString& file) { programs->addFiles({file}); });
    dialog->open();
}

void BottlesConfigView::openBottlesDebugTerminal() {
    BottleCommands::openTerminal(m_bottle, this, [this](const QString& errorText) { showError(errorText); });
}

void BottlesConfigView::connectTools() {
    connect(m_tools, &ToolsPage::importRequested, this, &BottlesConfigView::slotsimportRegs);
    connect(m_tools, &ToolsPage::terminalRequested, this, &BottlesConfigView::openBottlesDebugTerminal);
    connect(m_tools, &ToolsPage::resetRequested, this, &BottlesConfigView::askToReset);
    connect(m_tools, &ToolsPage::packagingRequested, this, [this] { Q_EMIT startPackageBottle(m_bottle); });
    connect(this, &BottlesConfigView::resetBottles, m_basic, &BasicPage::resetAll);
    connect(this, &BottlesConfigView::startPackageBottle, this, &BottlesConfigView::openPackaging);
}

void BottlesConfigView::askToReset() {
    const QStringList changed = m_basic->changedSettings();
    if (changed.isEmpty()) {
        Fenk::FloatingMessage::show(this, Fenk::Theme::icon("fenk-info"),
                                    tr("The basic settings are those of a new container already."));
        return;
    }
    auto* question = new Fenk::Dialog(
        tr("Reset to Defaults"),
        tr("These settings become those of a new container: %1. Programs and files stay as they are.")
            .arg(QLocale().createSeparatedList(changed)),
        this);
    question->setObjectName("reset_question");
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->addButton(tr("Cancel"), true);
    const int yes = question->addButton(tr("Reset"), false, Fenk::Dialog::ButtonWarning);
    connect(question, &QDialog::finished, this, [this, yes](int answer) {
        if (answer == yes)
            Q_EMIT resetBottles();
    });
    question->open();
}

void BottlesConfigView::openPackaging() {
    if (const auto& open = LaunchWindows::instance().packaging)
        open(m_programs->currentRef(), this);
}
