#pragma once

#include <QTimer>
#include <QWidget>

#include "programs/Program.h"

class AppListEmptyTipsWidget;
class ListPlaceholder;
class LocalAppItemWidget;
class ProgramGrid;
class ProgramLibrary;
class QLabel;
class QStackedWidget;

namespace Fenk {
class Spinner;
}

/// The programs of all bottles as a grid, all of them or those that a search finds. Loads itself, and says
/// what is the matter while there is nothing to show.
class AppLocalView : public QWidget {
    Q_OBJECT
public:
    explicit AppLocalView(QWidget* parent = nullptr);

    void search(const QString& keyword);
    /// To the tiles, from wherever the user was.
    void focusPrograms();

    ProgramLibrary* library() const { return m_library; }
    ProgramGrid* shownGrid() const;

Q_SIGNALS:
    void openRequested(const QString& path);
    /// What the search has found is gone.
    void searchObsolete();

public Q_SLOTS:
    void slotAddApp();
    void slotAppRemoved(const QString& bottleName, const QString& programId);
    void slotAppAdded(const QString& bottle_name, const QString& uuid, const QString& program_obj);
    void slotAppUpdated(const QString& bottle_name, const QString& uuid, const QString& program_obj);
    void slotAppStarsUpdate(const QString& appName, int score);
    void onShowAppsClicked();
    void onAddAppClicked();

private:
    QWidget* makeHead();
    void makePages();
    ProgramGrid* makeGrid();
    void onTileMade(LocalAppItemWidget* tile);
    void onProgramChanged(const ProgramPtr& program);
    void refresh();
    bool isSearchObsolete();
    void showMessage(const QString& sentence, bool failed, int ms);
    void showFailure();

    ProgramLibrary* m_library;
    QTimer m_refresh;  ///< many changes at once make one picture
    QString m_keyword;
    QString m_shownKeyword;  ///< that the found programs were found with
    QWidget* m_head = nullptr;
    QLabel* m_count = nullptr;
    QStackedWidget* m_pages;
    ProgramGrid* m_all = nullptr;
    ProgramGrid* m_found = nullptr;
    AppListEmptyTipsWidget* m_empty = nullptr;
    ListPlaceholder* m_nothingFound = nullptr;
    ListPlaceholder* m_failed = nullptr;
    QWidget* m_loading = nullptr;
    Fenk::Spinner* m_spinner = nullptr;
};
