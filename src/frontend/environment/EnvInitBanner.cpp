#include "environment/EnvInitBanner.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStackedWidget>

#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/controls/SuggestButton.h"
#include "fenk/style/SymbolicIconEngine.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"

using namespace Fenk;

namespace {

constexpr QSize BannerSize(660, 432);
constexpr QSize StageSize(500, 200);
constexpr QSize ResultSize(180, 160);
constexpr int StartWidth = 350;
constexpr int RetryWidth = 120;

Label* centred(Label::Kind kind) {
    auto* label = new Label(kind);
    label->setAlignment(Qt::AlignCenter);
    label->setMaximumWidth(StageSize.width());
    label->setElided(true);
    return label;
}

void applyLogBackground(QWidget* logs) {
    QPalette palette = logs->palette();
    palette.setColor(QPalette::Base, Theme::instance()->color(Theme::Sunken));
    logs->setPalette(palette);
}

}  // namespace

EnvInitBanner::EnvInitBanner(QWidget* parent)
    : Dialog(parent),
      m_stage(new QStackedWidget),
      m_picture(new QLabel),
      m_logs(new QPlainTextEdit),
      m_spinner(new Spinner),
      m_title(centred(Label::Heading)),
      m_description(centred(Label::Secondary)),
      m_message(centred(Label::Secondary)),
      m_reason(centred(Label::Secondary)),
      m_expand(new QPushButton),
      m_retry(new QPushButton(tr("Retry"))),
      m_start(new SuggestButton(tr("Start Using"))) {
    setObjectName("env_init_banner");
    setAccessibleName("env_init_banner");
    setFixedSize(BannerSize);
    setIcon(Theme::icon("cellarix"));
    // The other windows may be hidden meanwhile; closing this one must not quit the program.
    setAttribute(Qt::WA_QuitOnClose, false);

    m_picture->setAlignment(Qt::AlignCenter);
    m_logs->setObjectName("env_logs");
    m_logs->setAccessibleName("env_logs");
    m_logs->setReadOnly(true);
    m_logs->setUndoRedoEnabled(false);
    m_logs->setTabChangesFocus(true);
    m_logs->setMaximumBlockCount(MaxLines);
    m_logs->setFont(Theme::instance()->font(Theme::Fixed));
    connect(Theme::instance(), &Theme::changed, m_logs, [this] { applyLogBackground(m_logs); });
    applyLogBackground(m_logs);
    m_stage->setFixedSize(StageSize);
    m_stage->addWidget(m_picture);
    m_stage->addWidget(m_logs);

    m_title->setObjectName("env_title");
    m_description->setObjectName("env_description");
    m_description->setText(tr("It will take a few minutes, please wait patiently."));
    m_message->setObjectName("env_message");
    m_reason->setObjectName("env_reason");
    m_reason->setTextRole(Theme::Warning);
    m_expand->setObjectName("expand_logsbtn");
    m_expand->setAccessibleName("expand_logsbtn");
    m_expand->setAutoDefault(false);
    m_expand->setFixedHeight(Tokens::CompactHeight);
    setButtonKind(m_expand, ButtonKind::Quiet);
    connect(m_expand, &QPushButton::clicked, this, [this] { showLogs(!m_logs->isVisibleTo(this)); });
    m_start->setObjectName("start_using_btn");
    m_start->setAccessibleName("start_using_btn");
    m_start->setAutoDefault(false);
    m_start->setFixedWidth(StartWidth);
    connect(m_start, &QPushButton::clicked, this, [this] { done(0); });

    m_retry->setObjectName("retry_btn");
    m_retry->setAccessibleName("retry_btn");
    m_retry->setAccessibleDescription(m_retry->text());
    m_retry->setAutoDefault(false);
    m_retry->setMinimumWidth(RetryWidth);
    connect(m_retry, &QPushButton::clicked, this, &EnvInitBanner::retryRequested);

    auto* head = new QHBoxLayout;
    head->setSpacing(Tokens::Space8);
    head->addStretch();
    head->addWidget(m_spinner);
    head->addWidget(m_title);
    head->addStretch();
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_stage, 0, Qt::AlignHCenter);
    layout->addSpacing(Tokens::Space16);
    layout->addLayout(head);
    layout->addSpacing(Tokens::Space4);
    layout->addWidget(m_description, 0, Qt::AlignHCenter);
    layout->addWidget(m_message, 0, Qt::AlignHCenter);
    layout->addWidget(m_reason, 0, Qt::AlignHCenter);
    layout->addSpacing(Tokens::Space4);
    layout->addWidget(m_expand, 0, Qt::AlignHCenter);
    layout->addStretch();
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(Tokens::Space12);
    buttons->addStretch();
    buttons->addWidget(m_retry);
    buttons->addWidget(m_start);
    buttons->addStretch();
    layout->addLayout(buttons);
    QSizePolicy keepsItsPlace = m_start->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    m_start->setSizePolicy(keepsItsPlace);
    content->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    addContent(content);
    m_expand->setFocus();
    showLogs(false);
    showRunning({});
}

void EnvInitBanner::showRunning(const QString& title) {
    setWindowTitle(title);
    m_title->setText(title);
    m_picture->setPixmap(Theme::icon("cellarix").pixmap(Tokens::IconBanner, Tokens::IconBanner));
    m_spinner->start();
    m_spinner->show();
    m_description->show();
    m_message->hide();
    m_reason->hide();
    m_retry->hide();
    m_start->hide();
}

void EnvInitBanner::showCompleted(const QString& title, const QString& message) {
    showEnd(Theme::icon("cxb_package_success").pixmap(ResultSize), title, message);
}

void EnvInitBanner::showNotStarted(const QString& title, const QString& message) {
    const QSize size(Tokens::IconTile, Tokens::IconTile);
    const QColor colour = Theme::instance()->color(Theme::Warning);
    showEnd(tintedPixmap(Theme::icon("fenk-warning"), size, devicePixelRatioF(), colour), title, message);
}

void EnvInitBanner::offerRetry(const QString& reason) {
    m_reason->setText(reason);
    m_reason->setVisible(!reason.isEmpty());
    m_retry->show();
    m_retry->setFocus(Qt::ActiveWindowFocusReason);
}

void EnvInitBanner::showEnd(const QPixmap& picture, const QString& title, const QString& message) {
    setWindowTitle(title);
    m_title->setText(title);
    m_message->setText(message);
    m_picture->setPixmap(picture);
    m_spinner->stop();
    m_spinner->hide();
    m_description->hide();
    m_message->show();
    showLogs(false);
    m_start->show();
    m_start->setFocus(Qt::ActiveWindowFocusReason);
}

void EnvInitBanner::showLogs(bool on) {
    m_expand->setText(on ? tr("Hide Logs") : tr("View Logs"));
    m_expand->setIcon(Theme::icon(on ? "fenk-up" : "fenk-down"));
    m_stage->setCurrentWidget(on ? static_cast<QWidget*>(m_logs) : m_picture);
    if (on)
        m_logs->verticalScrollBar()->setValue(m_logs->verticalScrollBar()->maximum());
}

void EnvInitBanner::appendLines(const QStringList& lines) {
    QScrollBar* bar = m_logs->verticalScrollBar();
    const bool follows = bar->value() == bar->maximum();
    for (const QString& line : lines.mid(qMax(0, lines.size() - MaxLines)))
        m_logs->appendPlainText(line);
    if (follows)
        bar->setValue(bar->maximum());
}

void EnvInitBanner::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && m_start->isVisible())
        m_start->click();
    else
        Dialog::keyPressEvent(event);
}
