#pragma once

#include <QVariantAnimation>

#include "programs/AppItemWidget.h"
#include "shell/library/ProgramMenu.h"

class LocalAppItemMenu;
class QAbstractButton;
class QAction;
class QMenu;
class StarRating;
class TileIcon;
class TileName;

namespace Fenk {
class IconButton;
}

/// A program's tile in the grid of the library: picture, name, and, while it is active (pointer, focus, open
/// menu), the run button, stars and options. Owned by the grid, which deletes it when it is scrolled out of
/// sight; state that must outlive it lies in AppItemWidgetStateManager and below.
class LocalAppItemWidget : public AppItemWidget {
    Q_OBJECT
public:
    LocalAppItemWidget(const ProgramPtr& program, QWidget* parent);

    static QSize tileSize();

    /// Shows new contents of the same program.
    void setProgram(const ProgramPtr& program);
    void refreshRunState() override;
    /// True while the tile has the focus or its menu is open or about to open: it must not be deleted.
    bool isBusy() const;
    /// Whether Tab reaches this tile; the grid has one such tile.
    void setTabStop(bool on);

    QAction* action(ProgramMenu::Action action) const;
    /// Null until it was opened.
    QMenu* optionMenu() const;

Q_SIGNALS:
    /// The option menu is open.
    void menuReady();

public Q_SLOTS:
    /// Opens the option menu as soon as the service has told what it has to show.
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
    /// Shows the stars; with `uploadConf` also stores them in the bottle.
    void submitScore(int score, bool uploadConf);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void connectActions();
    void openMenu(const QPoint& place);
    void showPicture();
    void updateActive();
    void updateTexts();
    std::array<QWidget*, 3> focusParts() const;
    void setPartVisible(QWidget* part, bool visible);
    void askRemoval();
    void askAboutOrphan();
    void askForRating(int stars);

    TileIcon* m_icon;
    TileName* m_name;
    StarRating* m_stars;
    Fenk::IconButton* m_options;
    LocalAppItemMenu* m_menu;
    QVariantAnimation m_raise;  ///< of the background while the tile is active
    bool m_active = false;
};
