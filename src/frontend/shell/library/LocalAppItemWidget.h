#pragma once

#include <QVariantAnimation>
#include <array>

#include "programs/AppItemWidget.h"
#include "shell/library/ProgramMenu.h"

class QAbstractButton;
class QAction;
class QMenu;
class StarRating;
class TileName;

namespace Fenk {
class IconButton;
}

/// A program on its tile in the grid of the library. Lives only while it is in sight; what goes on with the
/// program lives elsewhere.
class LocalAppItemWidget : public AppItemWidget {
    Q_OBJECT
public:
    LocalAppItemWidget(const ProgramPtr& program, QWidget* parent);

    static QSize tileSize();

    /// Other contents of the same program.
    void setProgram(const ProgramPtr& program);
    void refreshRunState() override;
    /// Must not be taken away: the user is in the middle of something.
    bool isBusy() const;
    /// Whether Tab comes here; the grid has one such tile.
    void setTabStop(bool on);

    QAction* action(ProgramMenu::Action action) const { return m_actions[size_t(action)]; }
    QMenu* optionMenu() const { return m_menu; }
    /// How long menus wait for the service before they open without it; a second unless told otherwise.
    static void setLongestMenuWait(int ms) { s_longestMenuWaitMs = ms; }

Q_SIGNALS:
    void menuReady();

public Q_SLOTS:
    /// Finds out what the menu has to show, without holding anything up, and opens it then.
    void onBtnOptionClicked();
    void onCreatePackageTriggered();
    void onRemoveActionTriggered();
    void onDumpManifestActionTriggered();
    void onOpenConfigureTriggered();
    void onOpenFeedbackDialogTriggered();
    void oncreateDesktopFileAction();
    void onInternetOptActionTriggered();
    void onOpenPropDialogActionTriggered();
    void onExportFileAssosiationsActionTriggered();
    /// The stars as they are shown; `uploadConf`: and in the bottle.
    void submitScore(int score, bool uploadConf);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    class Icon;
    enum class Dot { None, Running, Failed };

    void makeActions();
    void fillMenu();
    void fillTranslators();
    void connectActions();
    void openMenu();
    /// The reason is shown where the entry is.
    void disable(ProgramMenu::Action which, bool on, const QString& reason);
    void showPicture();
    void updateActive();
    void updateTexts();
    void setPartVisible(QWidget* part, bool visible);
    static bool pressPart(QAbstractButton* part, bool isRepeated);
    void removeByKey();

    static int s_longestMenuWaitMs;

    Icon* m_icon;
    TileName* m_name;
    StarRating* m_stars;
    Fenk::IconButton* m_options;
    std::array<QAction*, ProgramMenu::ActionCount> m_actions{};
    QAction* m_repair;  ///< in the menu of a program that has failed
    QMenu* m_menu = nullptr;
    QPoint m_menuPlace;
    ProgramMenu::Facts m_facts;
    int m_unknownFacts = 0;  ///< answers that the menu waits for
    int m_opening = 0;       ///< of the menu, by number
    QVariantAnimation m_raise;
    bool m_active = false;
};
