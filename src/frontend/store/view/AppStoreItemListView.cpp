#include "store/view/AppStoreItemListView.h"

#include <QAccessibleWidget>
#include <QDebug>
#include <QKeyEvent>
#include <QScrollBar>

#include "fenk/window/Dialog.h"
#include "programs/Program.h"
#include "programs/ProgramStarts.h"
#include "store/install/YamlProgramInstallerSession.h"
#include "store/view/AppStoreItemDelegate.h"
#include "store/view/AppStoreItemModel.h"
#include "store/view/SkeletonCard.h"
#include "store/view/StoreAppItemUI.h"
#include "widgets/GridKeys.h"

using AppStoreViewUtils::ButtonState;

namespace {

constexpr int VisibilityMs = 100;
constexpr int WheelStep = SkeletonCard::Pitch.height() / 3;

/// The cards as children instead of cells of a table, so that assistive tools reach their buttons.
QAccessibleInterface* accessibleOf(const QString& className, QObject* object) {
    auto* list =
        className == QLatin1String("AppStoreItemListView") ? qobject_cast<QWidget*>(object) : nullptr;
    return list ? new QAccessibleWidget(list, QAccessible::List) : nullptr;
}

}  // namespace

AppStoreItemListView::AppStoreItemListView(QWidget* parent)
    : LoadingListView(parent), m_model(new AppStoreItemModel(this)) {
    static const bool known = (QAccessible::installFactory(accessibleOf), true);
    Q_UNUSED(known)
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setFlow(LeftToRight);
    setWrapping(true);
    setResizeMode(Adjust);
    setUniformItemSizes(true);
    setGridSize(SkeletonCard::Pitch);
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setAutoScroll(false);  // the pressed button of a card that is cut off would move from under the pointer
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setAutoFillBackground(false);
    auto* delegate = new AppStoreItemDelegate(this);
    setItemDelegate(delegate);
    setModel(m_model);
    verticalScrollBar()->setSingleStep(WheelStep);
    connect(delegate, &AppStoreItemDelegate::cardMade, this,
            [this](StoreAppItemUI* card) { card->installEventFilter(this); });
    connect(delegate, &AppStoreItemDelegate::pressed, this, &AppStoreItemListView::onPressed);
    connect(this, &AppStoreItemListView::appStarted, this, &AppStoreItemListView::onAppStarted);
    connect(this, &AppStoreItemListView::appStoped, this, &AppStoreItemListView::onAppStoped);
    connect(this, &AppStoreItemListView::appSetup, this, &AppStoreItemListView::onAppSetup);
    m_visibility.setSingleShot(true);
    m_visibility.setInterval(VisibilityMs);
    connect(&m_visibility, &QTimer::timeout, this, &AppStoreItemListView::updateCards);
    const auto later = [this] { m_visibility.start(); };
    connect(m_model, &QAbstractItemModel::rowsInserted, &m_visibility, later);
    connect(m_model, &QAbstractItemModel::rowsRemoved, &m_visibility, later);
    connect(m_model, &QAbstractItemModel::modelReset, &m_visibility, [this, later] {
        m_open.clear();
        later();
    });
}

/// As the list has laid them out.
int AppStoreItemListView::columns() const {
    const int top = visualRect(m_model->index(0, 0)).top();
    int count = 1;
    while (count < m_model->rowCount() && visualRect(m_model->index(count, 0)).top() == top)
        ++count;
    return count;
}

StoreAppItemUI* AppStoreItemListView::card(const QModelIndex& index) const {
    return qobject_cast<StoreAppItemUI*>(indexWidget(index));
}

/// Closes the cards out of sight and opens those in sight.
void AppStoreItemListView::updateCards() {
    if (!isVisible() || m_model->rowCount() == 0)
        return;
    const int count = columns();
    const int top = -visualRect(m_model->index(0, 0)).top();
    const int first = qMax(0, top / SkeletonCard::Pitch.height()) * count;
    const int last =
        qMin(m_model->rowCount(), ((top + viewport()->height()) / SkeletonCard::Pitch.height() + 1) * count);
    QList<QPersistentModelIndex> open;
    for (const QPersistentModelIndex& index : qAsConst(m_open)) {
        const StoreAppItemUI* item = card(index);
        if (!item)
            continue;
        if ((index.row() >= first && index.row() < last) || item->isBusy())
            open.append(index);
        else
            closePersistentEditor(index);
    }
    m_open = open;
    for (int row = first; row < last; ++row) {
        const QModelIndex index = m_model->index(row, 0);
        if (isPersistentEditorOpen(index))
            continue;
        openPersistentEditor(index);
        m_open.append(index);
        card(index)->setTabStop(index == currentIndex());
        m_model->requestIcon(index);
    }
    // Tab needs a card in sight to go to.
    const int current = currentIndex().row();
    const StoreAppItemUI* kept = card(currentIndex());
    if ((current < first || current >= last) && !(kept && kept->isBusy()))
        setCurrentIndex(m_model->index(first, 0));
}

void AppStoreItemListView::scrollContentsBy(int dx, int dy) {
    LoadingListView::scrollContentsBy(dx, dy);
    // A leap shows skeleton cards until the list rests: filling all cards for each frame would take too long.
    if (qAbs(dy) < viewport()->height())
        updateCards();
    if (!m_visibility.isActive())
        m_visibility.start();
}

void AppStoreItemListView::resizeEvent(QResizeEvent* event) {
    LoadingListView::resizeEvent(event);
    m_visibility.start();
}

void AppStoreItemListView::showEvent(QShowEvent* event) {
    LoadingListView::showEvent(event);
    updateCards();
}

void AppStoreItemListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    LoadingListView::currentChanged(current, previous);
    if (StoreAppItemUI* before = card(previous))
        before->setTabStop(false);
    if (StoreAppItemUI* now = card(current))
        now->setTabStop(true);
}

void AppStoreItemListView::focusCurrent() {
    moveTo(qMax(0, currentIndex().row()));
}

void AppStoreItemListView::moveTo(int row) {
    if (m_model->rowCount() == 0)
        return;
    const QModelIndex index = m_model->index(qBound(0, row, m_model->rowCount() - 1), 0);
    setCurrentIndex(index);
    scrollTo(index);
    updateCards();
    if (StoreAppItemUI* now = card(index))
        now->setFocus(Qt::TabFocusReason);
}

/// What it leaves alone the window takes: Up for the search field, letters for a search.
void AppStoreItemListView::keyPressEvent(QKeyEvent* event) {
    const int rows = qMax(1, viewport()->height() / SkeletonCard::Pitch.height());
    if (const auto to =
            GridKeys::target(event->key(), currentIndex().row(), columns(), rows, m_model->rowCount()))
        moveTo(*to);
    else
        event->ignore();
}

bool AppStoreItemListView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) {
        if (const auto* focused = qobject_cast<StoreAppItemUI*>(watched))
            setCurrentIndex(focused->index());
    }
    return LoadingListView::eventFilter(watched, event);
}

/// QAbstractItemView would give the focus to the card of a row that becomes the current one.
bool AppStoreItemListView::edit(const QModelIndex&, EditTrigger, QEvent*) {
    return false;
}

/// QAbstractItemView would move among its rows.
bool AppStoreItemListView::focusNextPrevChild(bool next) {
    return QWidget::focusNextPrevChild(next);
}

void AppStoreItemListView::onPressed(StoreAppItemUI* card) {
    const QModelIndex index = card->index();
    switch (card->state()) {
        case ButtonState::Run:
            Q_EMIT appStarted(index);
            break;
        case ButtonState::Quit:
            Q_EMIT appStoped(index);
            break;
        case ButtonState::Install:
            Q_EMIT appSetup(index);
            break;
        case ButtonState::Installing:
            break;
    }
}

void AppStoreItemListView::onAppStarted(const QModelIndex& index) {
    const auto chosen = m_model->app(index);
    Program program;
    program.ref = chosen.program();
    program.setName(chosen.app.getAppName());
    ProgramStarts::instance()->start(program, false);
    m_model->updateRunning(index);
}

void AppStoreItemListView::onAppStoped(const QModelIndex& index) {
    const auto chosen = m_model->app(index);
    qInfo().noquote() << "stoped " + AppStoreViewUtils::oneLine(chosen.app.getAppName());
    m_model->setData(index, false, AppStoreItemModel::RunningRole);
    ProgramStarts::instance()->stop(chosen.program());
}

void AppStoreItemListView::onAppSetup(const QModelIndex& index) {
    const QPersistentModelIndex row = index;
    const auto app = m_model->app(index).app;
    m_model->setData(index, false, AppStoreItemModel::InstalledRole);
    m_model->setData(index, true, AppStoreItemModel::InstallingRole);
    auto* session = new YamlProgramInstallerSession(app);  // deletes itself when it is done
    connect(session, &YamlProgramInstallerSession::signalError, this,
            [this, name = app.getAppName()](const QString& errorText) { showSetupError(name, errorText); });
    connect(session, &YamlProgramInstallerSession::signalDone, this, [this, row] {
        if (row.isValid())
            m_model->updateInstalled(row);
    });
    session->start();
}

void AppStoreItemListView::showSetupError(const QString& title, const QString& errorText) {
    auto* dialog = new Fenk::Dialog(AppStoreViewUtils::oneLine(title), errorText, window());
    dialog->setObjectName("store_setup_error");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->addButton(tr("Close"), true);
    dialog->open();
}
