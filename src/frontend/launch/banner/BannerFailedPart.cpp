#include "launch/banner/BannerFailedPart.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>

#include "fenk/controls/Label.h"
#include "fenk/controls/SuggestButton.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "launch/LaunchWindows.h"
#include "launch/banner/BannerCustomButton.h"

using namespace Fenk;

namespace {

constexpr int DebugWidth = 220;
constexpr int RepairRowButtonWidth = 184;
constexpr int QuietSpacing = 20;
constexpr int OfferSpacer = 25;
constexpr int NoOfferSpacer = 6;
constexpr int AdviceMaxWidth = 440;

QPushButton* named(QPushButton* button, const char* name, int width) {
    button->setAccessibleName(name);
    button->setAccessibleDescription(button->text());
    button->setFixedWidth(width);
    button->setMinimumHeight(Tokens::ControlHeight);  // long texts may not make it lower
    return button;
}

}  // namespace

// Tab visits the buttons in the order in which they are created.
BannerFailedPart::BannerFailedPart(QWidget* parent)
    : QWidget(parent),
      m_advice(new Label(Label::Secondary)),
      m_spacer(new QSpacerItem(0, OfferSpacer, QSizePolicy::Minimum, QSizePolicy::Fixed)),
      m_debug(named(new SuggestButton(tr("Debug")), "debug_btn", DebugWidth)),
      m_repairRow(makeRepairRow()),
      m_retryRow(makeRetryRow()) {
    m_advice->setObjectName("advice");
    m_advice->setReadingWidth(AdviceMaxWidth);
    m_advice->setAlignment(Qt::AlignCenter);
    connect(m_debug, &QPushButton::clicked, this, &BannerFailedPart::debug);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_advice, 0, Qt::AlignHCenter);
    layout->addItem(m_spacer);
    layout->addWidget(m_debug, 0, Qt::AlignHCenter);
    layout->addWidget(m_repairRow, 0, Qt::AlignHCenter);
    layout->addWidget(m_retryRow, 0, Qt::AlignHCenter);
    layout->addSpacing(Tokens::Space16);
    layout->addLayout(makeQuietRow());
}

QWidget* BannerFailedPart::makeRepairRow() {
    auto* row = new QWidget;
    row->setAccessibleName("repair_btns");
    m_repairDebug = named(new QPushButton(tr("Debug")), "repair_debug_btn", RepairRowButtonWidth);
    m_repair = named(new SuggestButton(tr("Repair")), "repair_btn", RepairRowButtonWidth);
    connect(m_repairDebug, &QPushButton::clicked, this, &BannerFailedPart::debug);
    connect(m_repair, &QPushButton::clicked, this, &BannerFailedPart::repair);
    m_repairLine = new QFrame;
    m_repairLine->setFrameShape(QFrame::VLine);
    m_repairLine->setFixedSize(1, Tokens::IconLarge);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space16);
    layout->addWidget(m_repairDebug);
    layout->addWidget(m_repairLine);
    layout->addWidget(m_repair);
    return row;
}

QWidget* BannerFailedPart::makeRetryRow() {
    auto* row = new QWidget;
    row->setAccessibleName("retry_btns");
    m_choose = named(new QPushButton(tr("Choose File...")), "choose_file_btn", RepairRowButtonWidth);
    m_choose->setToolTip(tr("Take an installer that you have got in another way"));
    m_retry = named(new SuggestButton(tr("Try Again")), "retry_btn", RepairRowButtonWidth);
    connect(m_choose, &QPushButton::clicked, this, &BannerFailedPart::chooseFile);
    connect(m_retry, &QPushButton::clicked, this, &BannerFailedPart::retry);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space16);
    layout->addWidget(m_choose);
    layout->addWidget(m_retry);
    row->hide();
    return row;
}

QLayout* BannerFailedPart::makeQuietRow() {
    m_feedback = new BannerCustomButton(Theme::icon("cxb_feedback"), tr("Feedback"));
    m_feedback->setAccessibleName("feedback_btn");
    auto* logsButton = new BannerCustomButton(Theme::icon("cxb_showlog"), tr("View Logs"));
    logsButton->setAccessibleName("view_logs_btn");
    connect(m_feedback, &BannerCustomButton::clicked, this, &BannerFailedPart::feedback);
    connect(logsButton, &BannerCustomButton::clicked, this, &BannerFailedPart::viewLogs);
    auto* layout = new QHBoxLayout;
    layout->setSpacing(QuietSpacing);
    layout->addStretch();
    layout->addWidget(m_feedback);
    layout->addWidget(logsButton);
    layout->addStretch();
    return layout;
}

void BannerFailedPart::offer(bool canRepair, bool canFix) {
    const LaunchWindows& windows = LaunchWindows::instance();
    const bool canDebug = bool(windows.configuration);
    const bool hasOffer = canRepair && (canFix || canDebug);
    if (canDebug)
        m_advice->setText(canFix
                              ? tr("You can try to repair, or use advanced debugging tools to improve the "
                                   "run success rate")
                              : tr("You can try to use advanced debugging tools to improve the run success "
                                   "rate"));
    else
        m_advice->setText(tr("You can try to repair it"));
    m_advice->setVisible(hasOffer);
    m_debug->setVisible(hasOffer && !canFix);
    m_repairRow->setVisible(hasOffer && canFix);
    m_retryRow->hide();
    m_repairDebug->setVisible(canDebug);
    m_repairLine->setVisible(canDebug);
    m_feedback->setVisible(bool(windows.feedback));
    m_spacer->changeSize(0, hasOffer ? OfferSpacer : NoOfferSpacer, QSizePolicy::Minimum, QSizePolicy::Fixed);
    layout()->invalidate();
}

void BannerFailedPart::hideOffers() {
    m_debug->hide();
    m_repairRow->hide();
    m_retryRow->hide();
}

void BannerFailedPart::setRepairDetails(const QString& text) {
    m_repair->setToolTip(text.isEmpty() ? QString() : plainToolTip(text));
    m_repair->setAccessibleDescription(text.isEmpty() ? m_repair->text() : text);
}

void BannerFailedPart::offerRetry(bool canChooseFile) {
    m_advice->setText(canChooseFile ? tr("You can try again, or choose the file yourself")
                                    : tr("You can try again"));
    m_advice->show();
    m_spacer->changeSize(0, OfferSpacer, QSizePolicy::Minimum, QSizePolicy::Fixed);
    // A window has at most one suggested button.
    setButtonKind(m_retry, m_debug->isHidden() ? ButtonKind::Suggested : ButtonKind::Normal);
    m_retryRow->layout()->setContentsMargins(0, m_debug->isHidden() ? 0 : Tokens::Space12, 0, 0);
    m_choose->setVisible(canChooseFile);
    m_retryRow->show();
    m_retryRow->updateGeometry();
    layout()->invalidate();
}

QPushButton* BannerFailedPart::suggested() const {
    if (!m_repairRow->isHidden())
        return m_repair;
    if (!m_retryRow->isHidden())
        return m_retry;
    return m_debug->isHidden() ? nullptr : m_debug;
}
