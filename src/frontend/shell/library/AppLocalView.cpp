#include "shell/library/AppLocalView.h"

#include <QApplication>
#include <QDebug>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStackedWidget>
#include <QStandardPaths>

#include "backend/SessionBus.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/controls/SuggestButton.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "launch/inspection/OpenRefusal.h"
#include "programs/AppItemWidgetStateManager.h"
#include "programs/ListPlaceholder.h"
#include "programs/OrphanedBottles.h"
#include "programs/ProgramIcons.h"
#include "programs/ProgramRuns.h"
#include "shell/library/AppListEmptyTipsWidget.h"
#include "shell/library/BottleBackupActions.h"
#include "shell/library/LocalAppItemWidget.h"
#include "shell/library/ProgramGrid.h"
#include "shell/library/ProgramLibrary.h"
#include "widgets/FileChoice.h"
#include "widgets/WidgetImages.h"

using namespace Fenk;

namespace {
constexpr int MessageMs = 4000;
constexpr int FailureMs = 12000;
}  // namespace

AppLocalView::AppLocalView(QWidget* parent)
    : QWidget(parent), m_library(new ProgramLibrary(this)), m_pages(new QStackedWidget) {
    setObjectName("app_local_view");
    m_head = makeHead();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_head);
    layout->addWidget(m_pages, 1);
    makePages();
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(0);
    connect(&m_refresh, &QTimer::timeout, this, &AppLocalView::refresh);
    connect(m_library, &ProgramLibrary::stateChanged, this, &AppLocalView::refresh);
    connect(m_library, &ProgramLibrary::listChanged, &m_refresh, qOverload<>(&QTimer::start));
    connect(m_library, &ProgramLibrary::searchable, &m_refresh, qOverload<>(&QTimer::start));
    connect(m_library, &ProgramLibrary::programChanged, this, &AppLocalView::onProgramChanged);
    auto* states = AppItemWidgetStateManager::instance();
    connect(states, &AppItemWidgetStateManager::failed, this,
            [this](const QString&, const QString& errorText) { showMessage(errorText, true, FailureMs); });
    connect(states, &AppItemWidgetStateManager::ratingRefused, m_library, &ProgramLibrary::load);
    refresh();
    m_library->load();
    ProgramRuns::instance()->load();
    OrphanedBottles::instance()->load();
}

QWidget* AppLocalView::makeHead() {
    auto* head = new QWidget;
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(Tokens::Space24, Tokens::Space8, Tokens::Space24, Tokens::Space8);
    m_count = new Label(tr("Installed 0 apps, including unsuccessful apps"), Label::Secondary);
    m_count->setObjectName("applist_count");
    auto* add = new SuggestButton(tr("Add Program…"));
    add->setObjectName("applistview_addappbtn");
    add->setAccessibleName("applistview_addappbtn");
    connect(add, &QPushButton::clicked, this, &AppLocalView::slotAddApp);
    auto* restore = new QPushButton(tr("Restore Backup…"));
    restore->setObjectName("applistview_restorebtn");
    connect(restore, &QPushButton::clicked, this, &AppLocalView::onRestoreClicked);
    row->addWidget(m_count, 1);
    row->addWidget(restore);
    row->addSpacing(Tokens::Space12);
    row->addWidget(add);
    return head;
}

void AppLocalView::makePages() {
    m_all = makeGrid();
    m_found = makeGrid();
    m_found->setObjectName("found_grid");
    m_empty = new AppListEmptyTipsWidget;
    connect(m_empty, &AppListEmptyTipsWidget::addRequested, this, &AppLocalView::slotAddApp);
    connect(m_empty, &AppListEmptyTipsWidget::restoreRequested, this, &AppLocalView::onRestoreClicked);
    m_nothingFound =
        new ListPlaceholder(QIcon(widgetImage("search_history.png")), tr("Nothing was searched"));
    m_nothingFound->setObjectName("applist_nothing_found");
    m_failed = new ListPlaceholder(Theme::icon("fenk-warning"),
                                   tr("faile to fetch application list, try again later..."), tr("Retry"));
    m_failed->setObjectName("applist_failed");
    connect(m_failed, &ListPlaceholder::pressed, m_library, &ProgramLibrary::load);
    m_loading = new QWidget;
    m_spinner = new Spinner;
    auto* middle = new QVBoxLayout(m_loading);
    middle->addWidget(m_spinner, 0, Qt::AlignCenter);
    for (QWidget* page : {static_cast<QWidget*>(m_loading), static_cast<QWidget*>(m_all),
                          static_cast<QWidget*>(m_found), static_cast<QWidget*>(m_empty),
                          static_cast<QWidget*>(m_nothingFound), static_cast<QWidget*>(m_failed)})
        m_pages->addWidget(page);
}

ProgramGrid* AppLocalView::makeGrid() {
    auto* grid = new ProgramGrid;
    grid->setAccessibleName(tr("Programs"));
    connect(grid, &ProgramGrid::tileMade, this, &AppLocalView::onTileMade);
    return grid;
}

ProgramGrid* AppLocalView::shownGrid() const {
    return qobject_cast<ProgramGrid*>(m_pages->currentWidget());
}

void AppLocalView::onTileMade(LocalAppItemWidget* tile) {
    connect(tile, &AppItemWidget::appStarsUpdate, this, &AppLocalView::slotAppStarsUpdate);
    connect(tile, &AppItemWidget::message, this,
            [this](const QString& text, bool isError) { showMessage(text, isError, MessageMs); });
}

void AppLocalView::showMessage(const QString& text, bool isError, int ms) {
    FloatingMessage::show(this, Theme::icon(isError ? "fenk-warning" : "fenk-success"), text, ms);
}

void AppLocalView::onProgramChanged(const ProgramPtr& program) {
    ProgramIcons::instance()->refresh(program->icon);
    m_all->updateProgram(program);
    m_found->updateProgram(program);
}

/// A lost bus connection cannot be restored, so there is no button to retry.
void AppLocalView::showFailure() {
    const bool canRetry = SessionBus::isConnected();
    m_failed->setDetail(canRetry ? OpenRefusal::ofBottlesPlace().reason : SessionBus::missingText());
    m_failed->button()->setVisible(canRetry);
}

void AppLocalView::refresh() {
    m_refresh.stop();
    const bool hadFocus = isAncestorOf(QApplication::focusWidget());
    const ProgramLibrary::State state = m_library->state();
    const QVector<ProgramPtr>& programs = m_library->programs();
    m_count->setText(programs.isEmpty()
                         ? tr("Installed 0 apps, including unsuccessful apps")
                         : tr("Installed apps %1,including unsuccessful apps").arg(programs.size()));
    m_head->setVisible(state == ProgramLibrary::State::Ready && !programs.isEmpty());
    if (state == ProgramLibrary::State::Loading)
        m_spinner->startDelayed();
    else
        m_spinner->stop();

    const bool hadSome = !m_all->programs().isEmpty();
    m_all->setPrograms(programs);
    if (state == ProgramLibrary::State::Ready && hadSome && isSearchObsolete()) {
        Q_EMIT searchObsolete();
        return;
    }
    if (state == ProgramLibrary::State::Failed)
        showFailure();
    QWidget* page = m_all;
    if (state != ProgramLibrary::State::Ready) {
        page = state == ProgramLibrary::State::Failed ? static_cast<QWidget*>(m_failed) : m_loading;
    } else if (programs.isEmpty()) {
        page = m_empty;
    } else if (!m_keyword.isEmpty() && !m_library->isSearchable()) {
        return;  // searchable() follows
    } else if (!m_keyword.isEmpty()) {
        m_found->setPrograms(m_library->search(m_keyword));
        m_shownKeyword = m_keyword;
        page = m_found;
        if (m_found->programs().isEmpty()) {
            qInfo() << "search APP name list is empty";
            page = m_nothingFound;
        }
    }
    m_pages->setCurrentWidget(page);
    // The focused widget may have been hidden or deleted.
    if (hadFocus && !isAncestorOf(QApplication::focusWidget()))
        focusPrograms();
}

/// Whether all programs that the shown search found have been removed.
bool AppLocalView::isSearchObsolete() {
    if (m_keyword.isEmpty() || !m_library->isSearchable())
        return false;
    const bool hadFound = m_pages->currentWidget() == m_found && m_keyword == m_shownKeyword;
    return m_library->programs().isEmpty() || (hadFound && m_library->search(m_keyword).isEmpty());
}

void AppLocalView::search(const QString& keyword) {
    if (keyword == m_keyword)
        return;
    m_keyword = keyword;
    if (keyword.isEmpty()) {
        qInfo() << "show all software";
    } else {
        qInfo().noquote() << "search for the keyword:" << keyword;
        qInfo() << "show search the app names";
    }
    refresh();
}

void AppLocalView::focusPrograms() {
    if (ProgramGrid* grid = shownGrid())
        grid->focusCurrent();
    else if (QWidget* page = m_pages->currentWidget())
        page->setFocus(Qt::TabFocusReason);
}

void AppLocalView::slotAddApp() {
    Q_EMIT addRequested();
}

void AppLocalView::onAddAppClicked() {
    QFileDialog* dialog = FileChoice::make(FileChoice::Kind::Program, window(), tr("Add Program"),
                                           QStandardPaths::writableLocation(QStandardPaths::HomeLocation),
                                           tr("Windows Application Programs (*.exe *.msi *.bat)"));
    dialog->setObjectName("applistview_adddialog");
    dialog->setAccessibleName("applistview_adddialog");
    // The filter is case-sensitive.
    dialog->setNameFilter(tr("Windows Application Programs (*.exe *.msi *.bat)")
                              .replace(QLatin1String("*.bat"), QLatin1String("*.bat *.EXE *.MSI *.BAT")));
    connect(dialog, &QFileDialog::fileSelected, this, &AppLocalView::openRequested);
    dialog->open();
}

void AppLocalView::onRestoreClicked() {
    BottleBackupActions::restore(window());
}

void AppLocalView::onShowAppsClicked() {
    search(QString());
}

void AppLocalView::slotAppAdded(const QString& bottle_name, const QString& uuid, const QString& program_obj) {
    qInfo() << "program added " << bottle_name << uuid;
    m_library->programAdded({bottle_name, uuid}, program_obj);
}

void AppLocalView::slotAppUpdated(const QString& bottle_name, const QString& uuid,
                                  const QString& program_obj) {
    qInfo() << "program updated: " << bottle_name << uuid;
    m_library->programUpdated({bottle_name, uuid}, program_obj);
}

void AppLocalView::slotAppRemoved(const QString& bottleName, const QString& programId) {
    qInfo() << "slotRemoveApp: " << bottleName << programId;
    m_library->programRemoved({bottleName, programId});
}

void AppLocalView::slotAppStarsUpdate(const QString& appName, int score) {
    if (const auto* item = qobject_cast<AppItemWidget*>(sender())) {
        m_library->setStars(item->ref(), score);
        return;
    }
    const QVector<ProgramPtr> programs = m_library->programs();
    for (const ProgramPtr& program : programs) {
        if (program->name == appName)
            m_library->setStars(program->ref, score);
    }
}
