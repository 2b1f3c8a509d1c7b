#include "launch/banner/WineExeLaunchBanner.h"

#include <QAccessible>
#include <QCloseEvent>
#include <QDebug>
#include <QHBoxLayout>
#include <QPushButton>

#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/window/TitleBar.h"
#include "launch/banner/BannerDescription.h"
#include "launch/banner/BannerFailedPart.h"
#include "launch/banner/BannerMotion.h"
#include "launch/banner/BannerPicture.h"
#include "launch/banner/SteadyText.h"

using namespace Fenk;

namespace {

constexpr int Width = 660;
constexpr int RunningHeight = 432;
constexpr int FailedHeight = 500;
constexpr int MaskAlpha = 204;
constexpr int NameMaxWidth = 200;
constexpr int StatusMaxWidth = 400;
constexpr int AboveIconWithPart = Tokens::Space24;
constexpr int AboveIcon = 68;  ///< centres the content of the running look; the failed look keeps it

}  // namespace

WineExeLaunchBanner::WineExeLaunchBanner(QWidget* parent)
    : MainWindow(parent),
      m_icon(new BannerPicture(Tokens::IconBanner)),
      m_name(new Label(Label::Heading)),
      m_status(new Label(Label::Body)),
      m_description(new BannerDescription),
      m_statusText(new SteadyText(this)),
      m_descriptionText(new SteadyText(this)),
      m_ring(new Spinner),
      m_failedMark(new BannerPicture(Tokens::IconLarge)),
      m_failed(new BannerFailedPart),
      m_above(new QSpacerItem(0, AboveIcon, QSizePolicy::Minimum, QSizePolicy::Fixed)),
      m_changing(new QWidget),
      m_motion(new BannerMotion(this, m_icon, m_changing, m_failed)) {
    setAccessibleName("exelaunch_banner");
    setBackgroundAlpha(MaskAlpha);
    titlebar()->setMenuVisible(false);
    setFixedSize(Width, RunningHeight);
    arrange();
    connectParts();
    m_runningStatus = tr("A Wine App is executing");
    showStatus(m_runningStatus);
    setAppName(tr("App Name"));
    m_description->setText(tr("I am a description...."));
    setIcon(Theme::icon("lumora-terminal"));
    m_ring->start();
}

void WineExeLaunchBanner::arrange() {
    m_status->setElided(true);
    m_name->setElidedAfter(2);
    m_name->setObjectName("app_name");
    m_name->setAlignment(Qt::AlignCenter);
    m_name->setMaximumWidth(NameMaxWidth);
    m_status->setObjectName("status");
    m_status->setMaximumWidth(StatusMaxWidth);
    m_description->setObjectName("description");
    m_description->setMaximumWidth(Width - 2 * Tokens::Space32);
    m_failed->hide();

    auto* changing = new QVBoxLayout(m_changing);
    changing->setContentsMargins(0, 0, 0, 0);
    changing->setSpacing(0);
    changing->addWidget(makeStatusRow(), 0, Qt::AlignHCenter);
    changing->addSpacing(Tokens::Space8);
    changing->addWidget(m_description, 0, Qt::AlignHCenter);
    changing->addSpacing(Tokens::Space24);
    changing->addWidget(m_failed);
    changing->addStretch();

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(Tokens::Space32, 0, Tokens::Space32, Tokens::Space24);
    layout->setSpacing(0);
    layout->addItem(m_above);
    layout->addWidget(m_icon, 0, Qt::AlignHCenter);
    layout->addSpacing(Tokens::Space16);
    layout->addWidget(m_name, 0, Qt::AlignHCenter);
    layout->addSpacing(Tokens::Space8);
    layout->addWidget(m_changing, 1);
    setCentralWidget(content);
}

QWidget* WineExeLaunchBanner::makeStatusRow() {
    m_failedMark->setIcon(Theme::icon("fenk-error"));
    m_failedMark->setTint(Theme::Danger);
    m_failedMark->hide();
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space8);
    layout->addWidget(m_ring);
    layout->addWidget(m_failedMark);
    layout->addWidget(m_status);
    return row;
}

void WineExeLaunchBanner::connectParts() {
    connect(m_statusText, &SteadyText::shown, this, [this](const QString& text) {
        m_runningStatus = text;
        showStatus(text);
    });
    connect(m_descriptionText, &SteadyText::shown, this, [this](const QString& text) {
        m_description->showText(text);
        if (m_closeState == Failed)
            keepRoomBelow(failedHeight());
    });
    connect(m_failed, &BannerFailedPart::feedback, this, &WineExeLaunchBanner::feedBackButtonClicked);
    connect(m_failed, &BannerFailedPart::viewLogs, this, &WineExeLaunchBanner::showLogsButtonClicked);
    connect(m_failed, &BannerFailedPart::debug, this, &WineExeLaunchBanner::debugButtonClicked);
    connect(m_failed, &BannerFailedPart::repair, this, &WineExeLaunchBanner::repairButtonClicked);
    connect(m_failed, &BannerFailedPart::retry, this, &WineExeLaunchBanner::retryButtonClicked);
    connect(m_failed, &BannerFailedPart::chooseFile, this, &WineExeLaunchBanner::chooseFileButtonClicked);
}

void WineExeLaunchBanner::addRunningPart(QWidget* part) {
    auto* changing = static_cast<QVBoxLayout*>(m_changing->layout());
    changing->insertWidget(changing->indexOf(m_failed), part, 0, Qt::AlignHCenter);
    m_runningPart = part;
}

void WineExeLaunchBanner::fitRunningPart() {
    if (!m_runningPart || m_closeState == Failed)
        return;
    const int above = m_runningPart->isHidden() ? AboveIcon : AboveIconWithPart;
    m_above->changeSize(0, above, QSizePolicy::Minimum, QSizePolicy::Fixed);
    centralWidget()->layout()->invalidate();
}

void WineExeLaunchBanner::setAppName(const QString& name) {
    m_name->setText(name);
    setWindowTitle(name);
}

void WineExeLaunchBanner::setIcon(const QIcon& icon) {
    m_icon->setIcon(icon);
    setWindowIcon(icon);
}

void WineExeLaunchBanner::setStatus(const QString& status) {
    m_statusText->set(status);
}

void WineExeLaunchBanner::setDescription(const QString& description) {
    m_descriptionText->set(description);
}

void WineExeLaunchBanner::showStatus(const QString& status) {
    const QString line = status.simplified();
    m_status->setText(line);
    // Room for all percentages of the step, so that the ring keeps its place while they grow.
    const int wanted = m_status->fontMetrics().horizontalAdvance(SteadyText::widest(line));
    m_status->setMinimumWidth(qMin(wanted, StatusMaxWidth));
}

void WineExeLaunchBanner::showFailed(bool canFix) {
    m_statusText->restart();
    m_descriptionText->restart();
    showStatus(tr("The app fails to run"));
    m_description->setReason(true);
    closeQuestion();
    m_ring->hide();
    if (m_runningPart)
        m_runningPart->hide();
    m_failedMark->show();
    m_failed->offer(m_canRepair, canFix);
    m_failed->show();
    keepRoomBelow(failedHeight());
    if (m_canRepair)
        m_motion->moveHeight(FailedHeight);
    m_motion->fadeFailedIn();
    m_closeState = Failed;
    if (QPushButton* suggested = m_failed->suggested())
        suggested->setFocus(Qt::ActiveWindowFocusReason);
    QAccessibleEvent alert(m_status, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void WineExeLaunchBanner::showRunning() {
    m_statusText->restart();
    m_descriptionText->restart();
    // Before the focused button is hidden: Qt would give the focus to a button of the title bar.
    setFocus(Qt::OtherFocusReason);
    m_motion->fadeFailedOut();
    m_motion->moveHeight(RunningHeight);
    m_closeState = Running;
    m_failed->hideOffers();
    m_failed->hide();
    m_failedMark->hide();
    m_description->setReason(false);
    keepRoomBelow(RunningHeight);
    m_ring->show();
    showStatus(m_runningStatus);
}

void WineExeLaunchBanner::setRepairDetails(const QString& text) {
    m_failed->setRepairDetails(text);
}

void WineExeLaunchBanner::offerRetry(bool canChooseFile) {
    if (m_closeState != Failed || !m_canRepair)
        return;
    m_failed->offerRetry(canChooseFile);
    keepRoomBelow(FailedHeight);
    m_failed->suggested()->setFocus(Qt::ActiveWindowFocusReason);
}

int WineExeLaunchBanner::failedHeight() const {
    return m_canRepair ? FailedHeight : RunningHeight;
}

/// Gives a long reason the space above the icon; if that is not enough, the reason loses lines.
void WineExeLaunchBanner::keepRoomBelow(int windowHeight) {
    QLayout* layout = centralWidget()->layout();
    m_above->changeSize(0, AboveIcon, QSizePolicy::Minimum, QSizePolicy::Fixed);
    if (m_description->isReason())
        m_description->limitLines(0);
    // By itself, a layout learns of new sizes of inner widgets only when the event loop runs again.
    m_failed->updateGeometry();
    m_changing->layout()->invalidate();
    m_changing->updateGeometry();
    layout->invalidate();
    const QMargins frame = contentsMargins();
    const int room = windowHeight - Tokens::TitleBarHeight - frame.top() - frame.bottom();
    const int missing = layout->totalHeightForWidth(Width) - room;
    const int stillMissing = missing - (AboveIcon - Tokens::Space16);
    if (m_description->isReason() && stillMissing > 0)
        m_description->limitLines(m_description->linesWithout(stillMissing));
    m_above->changeSize(0, qBound(Tokens::Space16, AboveIcon - missing, AboveIcon), QSizePolicy::Minimum,
                        QSizePolicy::Fixed);
    layout->invalidate();
}

void WineExeLaunchBanner::closeQuestion() {
    if (!m_confirm)
        return;
    m_confirm->disconnect(this);
    m_confirm->reject();
    m_confirm.clear();
}

bool WineExeLaunchBanner::event(QEvent* event) {
    // Title and icon are for the desktop's lists of windows; the title bar would repeat what the banner
    // shows.
    if (event->type() == QEvent::WindowTitleChange || event->type() == QEvent::WindowIconChange)
        return QMainWindow::event(event);
    return MainWindow::event(event);
}

void WineExeLaunchBanner::closeEvent(QCloseEvent* event) {
    qInfo() << event << m_closeState;
    if (m_closeState != Running) {
        event->accept();
        Q_EMIT finished();
        return;
    }
    event->ignore();
    if (!m_confirm) {
        m_confirm = new BannerCloseConfirmDialog(this, questionForm());
        connect(m_confirm, &BannerCloseConfirmDialog::confirmClose, this, &WineExeLaunchBanner::stopRunning);
    }
    m_confirm->show();
    m_confirm->raise();
    m_confirm->activateWindow();
}

void WineExeLaunchBanner::showEvent(QShowEvent* event) {
    MainWindow::showEvent(event);
    if (!m_placed)
        moveToCenter();
    m_placed = true;
}

void WineExeLaunchBanner::hideEvent(QHideEvent* event) {
    MainWindow::hideEvent(event);
    // Minimising leaves the question open. A launch that hides its banner needs no answer any more.
    if (!event->spontaneous())
        closeQuestion();
}

void WineExeLaunchBanner::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape) {
        close();
    } else if (isReturn && !event->isAutoRepeat()) {
        auto* focused = qobject_cast<QAbstractButton*>(focusWidget());
        if (QAbstractButton* target = focused ? focused : m_failed->suggested();
            target && target->isVisible())
            target->click();
    } else {
        MainWindow::keyPressEvent(event);
    }
}
