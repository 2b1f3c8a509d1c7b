// The option menu of LocalAppItemWidget and what its entries do.
#include <QActionGroup>
#include <QDebug>
#include <QMenu>
#include <QTimer>

#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "backend/InBackground.h"
#include "fenk/controls/IconButton.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "launch/run/BottleTasks.h"
#include "programs/AppItemWidgetStateManager.h"
#include "programs/ShellWindows.h"
#include "programs/StarRating.h"
#include "shell/library/LocalAppItemWidget.h"
#include "shell/library/RemovalQuestion.h"

using ProgramMenu::Action;

namespace {

const char* const Words[ProgramMenu::ActionCount] = {
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Edit Details"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Advanced Debugging"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Open in Terminal"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Open folder of app"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Open c-drive"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "File Associations"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Registry Editor"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Importing the registry"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Internet Settings"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Quit All Apps"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Translator"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Packaged apps"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Dump Manifest"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Create Desktop Icon"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Feedback"),
    QT_TRANSLATE_NOOP("LocalAppItemWidget", "Delete"),
};

/// Whether what the entry leads to is there; an entry that needs no window leads somewhere by itself.
bool leadsSomewhere(Action action) {
    const ShellWindows& windows = ShellWindows::instance();
    switch (action) {
        case Action::EditDetails:
            return bool(windows.properties);
        case Action::AdvancedDebugging:
            return bool(windows.configuration);
        case Action::FileAssociations:
            return bool(windows.fileAssociations);
        case Action::PackagedApps:
            return bool(windows.packaging);
        case Action::DumpManifest:
            return bool(windows.manifestExport);
        case Action::Feedback:
            return bool(windows.feedback);
        default:
            return true;
    }
}

}  // namespace

int LocalAppItemWidget::s_longestMenuWaitMs = 1000;

void LocalAppItemWidget::makeActions() {
    for (int i = 0; i < ProgramMenu::ActionCount; ++i)
        m_actions[size_t(i)] = new QAction(tr(Words[i]), this);
    m_repair = new QAction(tr("Repair"), this);
    connect(m_repair, &QAction::triggered, this, &LocalAppItemWidget::repair);
    Fenk::setDestructive(action(Action::Remove));
    connectActions();
}

void LocalAppItemWidget::connectActions() {
    using Self = LocalAppItemWidget;
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
    on(Action::CreateDesktopIcon, &Self::oncreateDesktopFileAction);
    on(Action::Feedback, &Self::onOpenFeedbackDialogTriggered);
    on(Action::Remove, &Self::onRemoveActionTriggered);
}

void LocalAppItemWidget::fillMenu() {
    m_menu = new QMenu(this);
    m_menu->setObjectName("appitem_option_menu");
    m_menu->setAccessibleName("appitem_option_menu");
    m_menu->setToolTipsVisible(true);
    connect(m_menu, &QMenu::aboutToHide, this, &LocalAppItemWidget::updateActive, Qt::QueuedConnection);
    m_menu->addAction(m_repair);
    const ProgramMenu::Layout layout = ProgramMenu::layoutFor(ref().bottle);
    for (const Action which : layout.before)
        m_menu->addAction(action(which));
    if (!layout.quickTools.isEmpty()) {
        QMenu* tools = m_menu->addMenu(tr("Quick Tools"));
        tools->setObjectName("quick_tools_menu");
        tools->setToolTipsVisible(true);
        for (const Action which : layout.quickTools)
            tools->addAction(action(which));
    }
    for (const Action which : layout.after)
        m_menu->addAction(action(which));
    m_menu->insertSeparator(action(Action::Remove));
}

void LocalAppItemWidget::onBtnOptionClicked() {
    qInfo() << "onBtnOptionClicked";
    if (m_unknownFacts > 0)
        return;
    if (!m_menu)
        fillMenu();
    m_facts = ProgramMenu::Facts::of(ref().bottle, ref().uuid, {});
    m_unknownFacts = 2;
    const int opening = ++m_opening;  // late answers are none of the next one
    const auto isWaiting = [this, opening] { return opening == m_opening && m_unknownFacts > 0; };
    const auto known = [this, isWaiting] {
        if (isWaiting() && --m_unknownFacts == 0)
            openMenu();
    };
    BottlesConfig* service = BottlesConfig::instance();
    service->watchBottle(ref().bottle, this, [this, known, isWaiting](const BusResult& result) {
        if (!isWaiting())
            return;
        const EmulatorsInfo emulators = m_facts.emulators;
        m_facts = ProgramMenu::Facts::of(ref().bottle, ref().uuid, result.object());
        m_facts.emulators = emulators;
        known();
    });
    service->watchEmulators(ref().bottle, this, [this, known, isWaiting](const BusResult& result) {
        if (!isWaiting())
            return;
        m_facts.emulators = EmulatorsInfo::fromObject(result.object());
        known();
    });
    // A service at work answers later; most entries do without it.
    QTimer::singleShot(s_longestMenuWaitMs, this, [this, isWaiting] {
        if (!isWaiting())
            return;
        m_unknownFacts = 0;
        openMenu();
    });
}

void LocalAppItemWidget::openMenu() {
    if (!isVisible())
        return;
    for (int i = 0; i < ProgramMenu::ActionCount; ++i) {
        const auto which = Action(i);
        action(which)->setVisible(ProgramMenu::isShown(which, m_facts) && leadsSomewhere(which));
    }
    m_repair->setVisible(failedStart() != nullptr);
    disable(Action::OpenInTerminal, isRunning(), tr("The program is running"));
    // Without knowing whether the bottle would go with it nobody can be asked.
    disable(Action::Remove, !m_facts.programCount,
            tr("The bottle service has not answered yet. Please open the menu again."));
    action(Action::Remove)->setText(ProgramMenu::removesBottle(m_facts) ? tr("Uninstall") : tr("Delete"));
    fillTranslators();
    m_menu->popup(m_menuPlace.isNull()
                      ? m_options->mapToGlobal(QPoint(0, m_options->height() + Fenk::Tokens::Space4))
                      : m_menuPlace);
    updateActive();
    Q_EMIT menuReady();
}

void LocalAppItemWidget::disable(Action which, bool on, const QString& reason) {
    action(which)->setEnabled(!on);
    action(which)->setToolTip(on ? reason : QString());
}

void LocalAppItemWidget::fillTranslators() {
    QAction* entry = action(Action::Translator);
    if (QMenu* old = entry->menu()) {
        entry->setMenu(nullptr);
        old->deleteLater();
    }
    if (m_facts.emulators.installed.isEmpty())
        return;
    auto* menu = new QMenu(m_menu);
    menu->setToolTipsVisible(true);
    auto* group = new QActionGroup(menu);
    const QString bottle = ref().bottle;
    for (auto it = m_facts.emulators.installed.begin(); it != m_facts.emulators.installed.end(); ++it) {
        const QString name = it.key();
        QAction* emulator = menu->addAction(QString(name).replace('&', "&&"));
        emulator->setToolTip(it.value().toHtmlEscaped());
        emulator->setCheckable(true);
        emulator->setChecked(name == m_facts.emulators.usingName);
        group->addAction(emulator);
        connect(emulator, &QAction::triggered, this,
                [bottle, name] { BottlesConfig::instance()->setEmulator(bottle, name); });
    }
    entry->setMenu(menu);
}

void LocalAppItemWidget::onCreatePackageTriggered() {
    if (const auto& open = ShellWindows::instance().packaging)
        open(ref(), window());
}

void LocalAppItemWidget::onDumpManifestActionTriggered() {
    if (const auto& open = ShellWindows::instance().manifestExport)
        open(ref(), window());
}

void LocalAppItemWidget::onOpenConfigureTriggered() {
    if (const auto& open = ShellWindows::instance().configuration)
        open(ref(), window());
}

void LocalAppItemWidget::onOpenFeedbackDialogTriggered() {
    if (const auto& open = ShellWindows::instance().feedback)
        open(ref(), window());
}

void LocalAppItemWidget::onOpenPropDialogActionTriggered() {
    if (const auto& open = ShellWindows::instance().properties)
        open(*program(), window());
}

void LocalAppItemWidget::onExportFileAssosiationsActionTriggered() {
    if (const auto& open = ShellWindows::instance().fileAssociations)
        open(ref(), window());
}

void LocalAppItemWidget::onInternetOptActionTriggered() {
    BottleTasks::openInternetOptions(ref().bottle);
}

void LocalAppItemWidget::oncreateDesktopFileAction() {
    const ProgramPtr of = program();
    changeServiceAsync(
        this, [of] { return BottleUtils::createDesktopEntry(of->ref.bottle, of->ref.uuid); },
        [this, of](bool made) {
            // Not everybody has a desktop with icons.
            const QString place = DesktopUtils::hasDesktopShortcut(of->ref.uuid)
                                      ? tr("%1 is on the desktop now.")
                                      : tr("%1 is in the menu of programs now.");
            Q_EMIT message((made ? place : tr("No icon of %1 could be put on the desktop.")).arg(of->name),
                           !made);
        });
}

void LocalAppItemWidget::onRemoveActionTriggered() {
    RemovalQuestion::ask(*program(), ProgramMenu::removesBottle(m_facts), window());
}

/// Without the menu, which finds out whether the bottle would go as well.
void LocalAppItemWidget::removeByKey() {
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

void LocalAppItemWidget::submitScore(int score, bool uploadConf) {
    const ProgramPtr of = program();
    m_stars->setStars(score);
    Q_EMIT appStarsUpdate(of->name, score);
    if (!uploadConf)
        return;
    // Not this tile's to take: it may be scrolled away by then.
    auto* states = AppItemWidgetStateManager::instance();
    changeServiceAsync(
        states, [of, score] { return BottleUtils::setStars(of->ref.bottle, of->ref.uuid, score); },
        [states, of](bool isStored) {
            if (!isStored)
                states->reportRefusedRating(*of);
        });
}
