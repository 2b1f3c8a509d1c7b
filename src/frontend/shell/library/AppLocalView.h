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

/// The library page: a grid of the programs of all bottles, or of those that a search finds. Loads the list
/// by itself and shows a placeholder while it is loading, empty or failed. GUI thread; waits for nothing.
class AppLocalView : public QWidget {
    Q_OBJECT
public:
    explicit AppLocalView(QWidget* parent = nullptr);

    /// An empty keyword shows all programs.
    void search(const QString& keyword);
    /// Moves the focus to the current tile, or to the placeholder.
    void focusPrograms();

    ProgramLibrary* library() const { return m_library; }
    /// Null while a placeholder is shown.
    ProgramGrid* shownGrid() const;

Q_SIGNALS:
    /// The user chose a file to run.
    void openRequested(const QString& path);
    /// The user wants the page that adds programs.
    void addRequested();
    /// The last program that the search found has been removed.
    void searchObsolete();

public Q_SLOTS:
    void slotAddApp();
    void slotAppRemoved(const QString& bottleName, const QString& programId);
    void slotAppAdded(const QString& bottle_name, const QString& uuid, const QString& program_obj);
    void slotAppUpdated(const QString& bottle_name, const QString& uuid, const QString& program_obj);
    void slotAppStarsUpdate(const QString& appName, int score);
    void onShowAppsClicked();
    void onAddAppClicked();
    void onRestoreClicked();

private:
    QWidget* makeHead();
    void makePages();
    ProgramGrid* makeGrid();
    void onTileMade(LocalAppItemWidget* tile);
    void onProgramChanged(const ProgramPtr& program);
    void refresh();
    bool isSearchObsolete();
    void showMessage(const QString& text, bool isError, int ms);
    void showFailure();

    ProgramLibrary* m_library;
    QTimer m_refresh;  ///< so that many changes at once cause one refresh()
    QString m_keyword;
    QString m_shownKeyword;  ///< of the search whose results are shown
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
