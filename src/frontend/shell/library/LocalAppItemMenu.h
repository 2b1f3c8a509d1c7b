#pragma once

#include <QObject>
#include <QPoint>
#include <array>

#include "shell/library/ProgramMenu.h"

class AppItemWidget;
class QAction;
class QMenu;
class QWidget;

/// The option menu of a program's tile. Each opening shows the entries that apply at that moment; the tile
/// connects to the actions and does the work. Owned by its tile; GUI thread only.
class LocalAppItemMenu : public QObject {
    Q_OBJECT
public:
    /// Opens below `anchor`, a part of the item, unless told otherwise.
    LocalAppItemMenu(AppItemWidget* item, QWidget* anchor);

    /// Asks the service what the menu has to show and opens when it has answered, without it after the
    /// longest wait. `place` is global; null means below the anchor.
    void open(const QPoint& place);
    bool isOpen() const;
    /// From open() until the menu is shown.
    bool isOpening() const { return m_pendingAnswers > 0; }

    QAction* action(ProgramMenu::Action action) const { return m_actions[size_t(action)]; }
    /// Only in the menu of a program whose last start has failed.
    QAction* repairAction() const { return m_repair; }
    /// Only in the menu of a program whose package has been removed.
    QAction* orphanAction() const { return m_orphan; }
    /// Null until the first opening.
    QMenu* menu() const { return m_menu; }
    /// As of the last opening.
    bool removesBottle() const { return ProgramMenu::removesBottle(m_facts); }

    /// In milliseconds, for all menus; 1000 at first.
    static void setLongestWait(int ms) { s_longestWaitMs = ms; }

Q_SIGNALS:
    void opened();
    void closed();

private:
    void fill();
    void fillTranslators();
    void show();
    void setEnabled(ProgramMenu::Action which, bool isEnabled, const QString& reasonIfNot);

    static int s_longestWaitMs;

    AppItemWidget* m_item;
    QWidget* m_anchor;
    std::array<QAction*, ProgramMenu::ActionCount> m_actions{};
    QAction* m_repair;
    QAction* m_orphan;
    QMenu* m_menu = nullptr;
    QPoint m_place;
    ProgramMenu::Facts m_facts;
    int m_pendingAnswers = 0;
    int m_opening = 0;  ///< number of the present opening
};
