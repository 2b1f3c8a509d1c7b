#include "launch/banner/WineExeLaunchBanner.h"

#include <QCloseEvent>
#include <QDebug>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "fenk/Label.h"
#include "fenk/Spinner.h"
#include "fenk/SuggestButton.h"
#include "fenk/TitleBar.h"
#include "fenk/Tokens.h"
#include "launch/banner/BannerCloseConfirmDialog.h"
#include "launch/banner/BannerCustomButton.h"

using namespace Fenk;

namespace {

constexpr int Width = 660;
constexpr int RunningHeight = 432;
constexpr int FailedHeight = 500;
constexpr int MaskAlpha = 204;
constexpr int NameMaxWidth = 200;
constexpr int StatusMaxWidth = 400;
constexpr int DebugWidth = 220;
constexpr int RepairRowButtonWidth = 184;

template <class Button, class Signal>
Button* named(Button* button, const char* name, WineExeLaunchBanner* banner, Signal pressed) {
    button->setAccessibleName(name);
    QObject::connect(button, &Button::clicked, banner, pressed);
    return button;
}

}  // namespace

WineExeLaunchBanner::WineExeLaunchBanner(QWidget* parent)
    : MainWindow(parent),
      m_icon(new QLabel),
      m_name(new Label(Label::Heading)),
      m_status(new Label(Label::Body)),
      m_description(new Label(Label::Small)),
      m_running(new Spinner) {
    setAccessibleName("exelaunch_banner");
    setBackgroundAlpha(MaskAlpha);
    titlebar()->setMenuVisible(false);
    setFixedSize(Width, RunningHeight);
    m_failed = makeFailedPart();
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    m_name->setMaximumWidth(NameMaxWidth);
    m_status->setMaximumWidth(StatusMaxWidth);
    for (QWidget* part : {static_cast<QWidget*>(m_icon), static_cast<QWidget*>(m_name), m_running,
                          static_cast<QWidget*>(m_status), static_cast<QWidget*>(m_description), m_failed})
        layout->addWidget(part, 0, Qt::AlignHCenter);
    setCentralWidget(content);
    static_cast<Spinner*>(m_running)->start();
    setStatus(tr("A Wine App is executing"));
    setAppName(tr("App Name"));
    setDescription(tr("I am a description...."));
    setIcon(Theme::icon("lumora-terminal"));
    m_failed->hide();
    moveToCenter();
}

QWidget* WineExeLaunchBanner::makeFailedPart() {
    auto* part = new QWidget;
    auto* layout = new QVBoxLayout(part);
    m_advice = new Label(Label::Secondary);
    m_debug =
        named(new SuggestButton(tr("Debug")), "debug_btn", this, &WineExeLaunchBanner::debugButtonClicked);
    m_debug->setFixedWidth(DebugWidth);
    m_repairRow = new QWidget;
    m_repairRow->setAccessibleName("repair_btns");
    auto* row = new QHBoxLayout(m_repairRow);
    auto* debug = named(new QPushButton(tr("Debug")), "repair_debug_btn", this,
                        &WineExeLaunchBanner::debugButtonClicked);
    auto* repair =
        named(new SuggestButton(tr("Repair")), "repair_btn", this, &WineExeLaunchBanner::repairButtonClicked);
    for (QPushButton* button : {debug, static_cast<QPushButton*>(repair)}) {
        button->setFixedWidth(RepairRowButtonWidth);
        row->addWidget(button);
    }
    auto* quiet = new QHBoxLayout;
    quiet->addWidget(named(new BannerCustomButton(Theme::icon("cxb_feedback"), tr("Feedback")),
                           "feedback_btn", this, &WineExeLaunchBanner::feedBackButtonClicked));
    quiet->addWidget(named(new BannerCustomButton(Theme::icon("cxb_showlog"), tr("View Logs")),
                           "view_logs_btn", this, &WineExeLaunchBanner::showLogsButtonClicked));
    for (QWidget* widget : {static_cast<QWidget*>(m_advice), static_cast<QWidget*>(m_debug), m_repairRow})
        layout->addWidget(widget, 0, Qt::AlignHCenter);
    layout->addLayout(quiet);
    return part;
}

void WineExeLaunchBanner::setAppName(const QString& name) {
    m_name->setText(name);
    setWindowTitle(name);
}

void WineExeLaunchBanner::setStatus(const QString& status) {
    m_status->setText(status);
}

void WineExeLaunchBanner::setDescription(const QString& description) {
    m_description->setText(description);
}

void WineExeLaunchBanner::setIcon(const QIcon& icon) {
    m_icon->setPixmap(icon.pixmap(Tokens::IconBanner));
    setWindowIcon(icon);
}

void WineExeLaunchBanner::showFailed(bool canFix) {
    setStatus(tr("The app fails to run"));
    if (m_confirm)
        m_confirm->close();
    m_running->hide();
    setFixedHeight(m_canRepair ? FailedHeight : RunningHeight);
    m_advice->setText(canFix ? tr("You can try to repair, or use advanced debugging tools to improve the run "
                                  "success rate")
                             : tr("You can try to use advanced debugging tools to improve the run success "
                                  "rate"));
    m_advice->setVisible(m_canRepair);
    m_debug->setVisible(m_canRepair && !canFix);
    m_repairRow->setVisible(m_canRepair && canFix);
    m_failed->show();
    m_closeState = Failed;
}

void WineExeLaunchBanner::showRunning() {
    setFixedHeight(RunningHeight);
    m_closeState = Running;
    m_debug->hide();
    m_repairRow->hide();
    m_failed->hide();
    m_running->show();
}

void WineExeLaunchBanner::closeEvent(QCloseEvent* event) {
    qInfo() << event << m_closeState;
    if (m_closeState != Running) {
        Q_EMIT finished();
        event->accept();
        return;
    }
    event->ignore();
    if (!m_confirm) {
        m_confirm = new BannerCloseConfirmDialog(this);
        connect(m_confirm, &BannerCloseConfirmDialog::confirmClose, this, &WineExeLaunchBanner::stopRunning);
    }
    m_confirm->show();
}
