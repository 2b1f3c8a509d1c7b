// The part of a tile that carries out what its menu, its stars and its keys ask for.
#include <QAction>
#include <QPointer>
#include <QTimer>

#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "backend/InBackground.h"
#include "feedback/rating/ApplyScoreDialog.h"
#include "launch/LaunchWindows.h"
#include "launch/run/BottleTasks.h"
#include "programs/AppItemWidgetStateManager.h"
#include "programs/OrphanedBottles.h"
#include "programs/StarRating.h"
#include "shell/associations/FileAssosiationsExportDialog.h"
#include "shell/library/BottleBackupActions.h"
#include "shell/library/LocalAppItemMenu.h"
#include "shell/library/LocalAppItemWidget.h"
#include "shell/library/OrphanQuestion.h"
#include "shell/library/RemovalQuestion.h"
#include "shell/properties/AppPropertyDlg.h"

using ProgramMenu::Action;

namespace {

void storeRating(const ProgramPtr& of, int score) {
    auto* states = AppItemWidgetStateManager::instance();
    changeServiceAsync(
        states, [of, score] { return BottleUtils::setStars(of->ref.bottle, of->ref.uuid, score); },
        [states, of](bool isStored) {
            if (!isStored)
                states->reportRefusedRating(*of);
        });
}

}  // namespace

void LocalAppItemWidget::connectActions() {
    using Self = LocalAppItemWidget;
    connect(m_menu->repairAction(), &QAction::triggered, this, &Self::repair);
    connect(m_menu->orphanAction(), &QAction::triggered, this, &Self::askAboutOrphan);
    connect(this, &AppItemWidget::packageMissing, this, &Self::askAboutOrphan);
    const auto on = [this](Action which, auto slot) {
        connect(action(which), &QAction::triggered, this, slot);
    };
    const auto bottle = [this] { return ref().bottle; };
    on(Action::EditDetails, &Self::onOpenPropDialogActionTriggered);
    on(Action::AdvancedDebugging, &Self::onOpenConfigureTriggered);
    on(Action::OpenInTerminal, [this] { onStartButtonClicked(true); });
    on(Action::OpenFolder, [this] { BottleUtils::openProgramFolder(ref().bottle, ref().uuid); });
    on(Action::OpenDriveC, [bottle] { BottleUtils::openDriveC(bottle()); });
    on(Action::FileAssociations, &Self::onExportFileAssosiationsActionTriggered);
    on(Action::RegistryEditor, [bottle] { BottleUtils::runCommand(bottle(), "regedit.exe"); });
    on(Action::ImportRegistry, [this] { BottleTasks::importRegistry(window(), ref().bottle); });
    on(Action::InternetSettings, &Self::onInternetOptActionTriggered);
    on(Action::QuitAllApps, [bottle] { BottleTasks::killWineServer(bottle()); });
    on(Action::PackagedApps, &Self::onCreatePackageTriggered);
    on(Action::DumpManifest, &Self::onDumpManifestActionTriggered);
    on(Action::BackUp, [this] { BottleBackupActions::backUp(*program(), window()); });
    on(Action::CreateDesktopIcon, &Self::oncreateDesktopFileAction);
    on(Action::Feedback, &Self::onOpenFeedbackDialogTriggered);
    on(Action::Remove, &Self::onRemoveActionTriggered);
}

void LocalAppItemWidget::onCreatePackageTriggered() {
    if (const auto& open = LaunchWindows::instance().packaging)
        open(ref(), window());
}

void LocalAppItemWidget::onDumpManifestActionTriggered() {
    if (const auto& open = LaunchWindows::instance().manifestExport)
        open(ref(), window());
}

void LocalAppItemWidget::onOpenConfigureTriggered() {
    if (const auto& open = LaunchWindows::instance().configuration)
        open(ref(), LaunchWindows::ConfigMode::Ordinary, window());
}

void LocalAppItemWidget::onOpenFeedbackDialogTriggered() {
    const auto ask = LaunchWindows::instance().feedback;
    if (!ask)
        return;
    // It runs an event loop, in which this item may go, and with it the menu whose click this is.
    QTimer::singleShot(0, window(), [ask, program = program(), over = window()] {
        ask(program->ref, program->name, {}, over);
    });
}

void LocalAppItemWidget::onOpenPropDialogActionTriggered() {
    AppPropertyDlg::openFor(*program(), window());
}

void LocalAppItemWidget::onExportFileAssosiationsActionTriggered() {
    FileAssosiationsExportDialog::openFor(ref(), window());
}

void LocalAppItemWidget::onInternetOptActionTriggered() {
    BottleTasks::openInternetOptions(ref().bottle);
}

void LocalAppItemWidget::oncreateDesktopFileAction() {
    const ProgramPtr of = program();
    changeServiceAsync(
        this, [of] { return BottleUtils::createDesktopEntry(of->ref.bottle, of->ref.uuid); },
        [this, of](bool isMade) {
            const QString place = DesktopUtils::hasDesktopShortcut(of->ref.uuid)
                                      ? tr("%1 is on the desktop now.")
                                      : tr("%1 is in the menu of programs now.");
            Q_EMIT message((isMade ? place : tr("No icon of %1 could be put on the desktop.")).arg(of->name),
                           !isMade);
        });
}

void LocalAppItemWidget::onRemoveActionTriggered() {
    RemovalQuestion::ask(*program(), m_menu->removesBottle(), window());
}

void LocalAppItemWidget::askAboutOrphan() {
    const OrphanedBottle* bottle = orphan();
    if (bottle && bottle->isBeingKept)
        Q_EMIT message(OrphanQuestion::textOf(*program(), *bottle), false);
    else if (bottle)
        OrphanQuestion::ask(*program(), *bottle, window());
}

/// The menu was not opened, so that the service is asked here whether the bottle is deleted, too.
void LocalAppItemWidget::askRemoval() {
    const ProgramPtr of = program();
    BottlesConfig::instance()->watchBottle(of->ref.bottle, this, [this, of](const BusResult& result) {
        const auto facts = ProgramMenu::Facts::of(of->ref.bottle, of->ref.uuid, result.object());
        if (facts.programCount)
            RemovalQuestion::ask(*of, ProgramMenu::removesBottle(facts), window());
        else
            Q_EMIT message(tr("%1 cannot be removed now: its container cannot be found.").arg(of->name),
                           true);
    });
}

/// The tile may be scrolled away, and deleted, while the dialog is open.
void LocalAppItemWidget::askForRating(int stars) {
    auto* dialog = ApplyScoreDialog::openFor(*program(), stars, window());
    const QPointer<LocalAppItemWidget> tile = this;
    connect(dialog, &ApplyScoreDialog::submit, dialog, [tile, of = program()](int score) {
        if (tile && tile->ref() == of->ref)
            tile->submitScore(score, true);
        else
            storeRating(of, score);
    });
}

void LocalAppItemWidget::submitScore(int score, bool uploadConf) {
    m_stars->setStars(score);
    Q_EMIT appStarsUpdate(program()->name, score);
    if (uploadConf)
        storeRating(program(), score);
}
