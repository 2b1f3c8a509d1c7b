#include "fenk/window/StandardMenu.h"

#include <QActionGroup>
#include <QMenu>

#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"

namespace Fenk {

namespace {

QString translated(const char* text) {
    return QCoreApplication::translate("TitleBarMenu", text);
}

void addThemeMenu(QMenu* menu) {
    QMenu* themes = menu->addMenu(translated(QT_TRANSLATE_NOOP("TitleBarMenu", "Theme")));
    themes->setObjectName("theme_menu");
    auto* group = new QActionGroup(themes);
    Theme* theme = Theme::instance();
    const auto add = [themes, group](const QString& text, auto choose) {
        QAction* action = themes->addAction(text, themes, choose);
        action->setCheckable(true);
        group->addAction(action);
        return action;
    };
    QAction* system = add(translated(QT_TRANSLATE_NOOP("TitleBarMenu", "System theme")),
                          [theme] { theme->followSystem(); });
    themes->addSeparator();
    QAction* light = add(translated(QT_TRANSLATE_NOOP("TitleBarMenu", "Light")),
                         [theme] { theme->setColorType(Theme::Light); });
    QAction* dark = add(translated(QT_TRANSLATE_NOOP("TitleBarMenu", "Dark")),
                        [theme] { theme->setColorType(Theme::Dark); });
    QObject::connect(themes, &QMenu::aboutToShow, themes, [=] {
        (theme->followsSystem() ? system : theme->isDark() ? dark : light)->setChecked(true);
    });
}

}  // namespace

void appendStandardActions(QMenu* menu) {
    if (!menu->isEmpty())
        menu->addSeparator();
    addThemeMenu(menu);
    auto* application = qobject_cast<Application*>(QCoreApplication::instance());
    if (!application)
        return;
    menu->addAction(translated(QT_TRANSLATE_NOOP("TitleBarMenu", "About")), application,
                    &Application::handleAboutAction);
    menu->addSeparator();
    menu->addAction(translated(QT_TRANSLATE_NOOP("TitleBarMenu", "Exit")), application,
                    &Application::handleQuitAction);
}

void chooseFirstEntry(QMenu* menu) {
    const QList<QAction*> entries = menu->actions();
    for (QAction* entry : entries) {
        if (entry->isVisible() && entry->isEnabled() && !entry->isSeparator()) {
            menu->setActiveAction(entry);
            return;
        }
    }
}

}  // namespace Fenk
