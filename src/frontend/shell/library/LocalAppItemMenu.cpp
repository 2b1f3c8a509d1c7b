#include "shell/library/LocalAppItemMenu.h"

#include <QActionGroup>
#include <QMenu>
#include <QTimer>

#include "backend/BottlesConfig.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "launch/LaunchWindows.h"
#include "programs/AppItemWidget.h"

using ProgramMenu::Action;

namespace {

const char* const Words[ProgramMenu::ActionCount] = {
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Edit Details"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Advanced Debugging"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Open in Terminal"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Open folder of app"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Open c-drive"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "File Associations"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Registry Editor"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Importing the registry"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Internet Settings"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Quit All Apps"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Translator"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Packaged apps"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Dump Manifest"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Back Up…"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Create Desktop Icon"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Feedback"),
    QT_TRANSLATE_NOOP("LocalAppItemMenu", "Delete"),
};

/// True for an entry that opens no window of another room, too.
bool hasWindow(Action action) {
    const LaunchWindows& windows = LaunchWindows::instance();
    switch (action) {
        case Action::AdvancedDebugging:
            return bool(windows.configuration);
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

int LocalAppItemMenu::s_longestWaitMs = 1000;

LocalAppItemMenu::LocalAppItemMenu(AppItemWidget* item, QWidget* anchor)
    : QObject(item),
      m_item(item),
      m_anchor(anchor),
      m_repair(new QAction(tr("Repair"), this)),
      m_orphan(new QAction(tr("Package Removed…"), this)) {
    for (int i = 0; i < ProgramMenu::ActionCount; ++i)
        m_actions[size_t(i)] = new QAction(tr(Words[i]), this);
    Fenk::setDestructive(action(Action::Remove));
}

void LocalAppItemMenu::fill() {
    m_menu = new QMenu(m_item);
    m_menu->setObjectName("appitem_option_menu");
    m_menu->setAccessibleName("appitem_option_menu");
    m_menu->setToolTipsVisible(true);
    connect(m_menu, &QMenu::aboutToHide, this, &LocalAppItemMenu::closed);
    m_menu->addActions({m_repair, m_orphan});
    const ProgramMenu::Layout layout = ProgramMenu::layoutFor(m_item->ref().bottle);
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

bool LocalAppItemMenu::isOpen() const {
    return m_menu && m_menu->isVisible();
}

void LocalAppItemMenu::open(const QPoint& place) {
    m_place = place;
    if (isOpening())
        return;
    if (!m_menu)
        fill();
    const ProgramRef ref = m_item->ref();
    m_facts = ProgramMenu::Facts::of(ref.bottle, ref.uuid, {});
    m_pendingAnswers = 2;
    const int opening = ++m_opening;
    const auto isCurrent = [this, opening] { return opening == m_opening && isOpening(); };
    const auto answered = [this] {
        if (--m_pendingAnswers == 0)
            show();
    };
    BottlesConfig* service = BottlesConfig::instance();
    service->watchBottle(ref.bottle, this, [this, ref, answered, isCurrent](const BusResult& result) {
        if (!isCurrent())
            return;
        const EmulatorsInfo emulators = m_facts.emulators;
        m_facts = ProgramMenu::Facts::of(ref.bottle, ref.uuid, result.object());
        m_facts.emulators = emulators;
        answered();
    });
    service->watchEmulators(ref.bottle, this, [this, answered, isCurrent](const BusResult& result) {
        if (!isCurrent())
            return;
        m_facts.emulators = EmulatorsInfo::fromObject(result.object());
        answered();
    });
    // A busy service answers late, and most entries work without its answer.
    QTimer::singleShot(s_longestWaitMs, this, [this, isCurrent] {
        if (!isCurrent())
            return;
        m_pendingAnswers = 0;
        show();
    });
}

void LocalAppItemMenu::show() {
    if (!m_item->isVisible())
        return;
    for (int i = 0; i < ProgramMenu::ActionCount; ++i) {
        const auto which = Action(i);
        action(which)->setVisible(ProgramMenu::isShown(which, m_facts) && hasWindow(which));
    }
    m_repair->setVisible(m_item->failedStart() != nullptr);
    m_orphan->setVisible(m_item->orphan() != nullptr);
    setEnabled(Action::OpenInTerminal, !m_item->isRunning(), tr("The program is running"));
    // The question needs to say whether the bottle is deleted, too.
    setEnabled(Action::Remove, m_facts.programCount.has_value(),
               tr("The bottle service has not answered yet. Please open the menu again."));
    action(Action::Remove)->setText(removesBottle() ? tr("Uninstall") : tr("Delete"));
    fillTranslators();
    m_menu->popup(m_place.isNull()
                      ? m_anchor->mapToGlobal(QPoint(0, m_anchor->height() + Fenk::Tokens::Space4))
                      : m_place);
    Q_EMIT opened();
}

void LocalAppItemMenu::setEnabled(Action which, bool isEnabled, const QString& reasonIfNot) {
    action(which)->setEnabled(isEnabled);
    action(which)->setToolTip(isEnabled ? QString() : reasonIfNot);
}

void LocalAppItemMenu::fillTranslators() {
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
    const QString bottle = m_item->ref().bottle;
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
