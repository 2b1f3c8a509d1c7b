#include "shell/configuration/page/DebuggingLogsFrame.h"

#include <QBoxLayout>
#include <QStackedWidget>

#include "core/base/BuildInfo.h"
#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Tokens.h"
#include "shell/configuration/hints/CustomSPitter.h"
#include "shell/configuration/hints/DebuggingLogsEdit.h"
#include "shell/configuration/hints/DebuggingLogsView.h"
#include "shell/configuration/hints/HintHtml.h"

using namespace Fenk;

namespace {

constexpr int ErrorLine = 0;  // DebugLog has decided
constexpr int PlainLine = 3;
constexpr int LogShare = 3;  ///< of five parts of the width
constexpr int HintsShare = 2;

/// A heading with buttons at its right edge, and what it is the heading of.
QWidget* makePart(const QString& title, const QVector<QWidget*>& buttons, QWidget* content) {
    auto* head = new QHBoxLayout;
    head->setSpacing(Tokens::Space8);
    auto* label = new Label(title, Label::Strong);
    label->setMinimumHeight(Tokens::CompactHeight);
    head->addWidget(label, 1);
    for (QWidget* button : buttons)
        head->addWidget(button);
    auto* part = new QWidget;
    auto* layout = new QVBoxLayout(part);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space4);
    layout->addLayout(head);
    layout->addWidget(content, 1);
    return part;
}

}  // namespace

DebuggingLogsFrame::DebuggingLogsFrame(QWidget* parent)
    : QWidget(parent),
      m_pages(new QStackedWidget),
      m_log(new DebuggingLogsEdit),
      m_hints(new DebuggingLogsView),
      m_spinner(new Spinner) {
    setObjectName("debugging_logs");
    m_spinner->setToolTip(tr("Looking for hints in the log"));
    m_spinner->setAccessibleName(m_spinner->toolTip());
    auto* splitter = new CustomSPitter(Qt::Horizontal);
    splitter->addWidget(makeLogPart());
    splitter->addWidget(makeHintsPart());
    splitter->setStretchFactor(0, LogShare);
    splitter->setStretchFactor(1, HintsShare);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Tokens::RingExtent, Tokens::Space4, Tokens::Space12, 0);
    layout->addWidget(splitter);
    connect(m_hints, &QTextBrowser::anchorClicked, this, &DebuggingLogsFrame::anchorClicked);
    setReading(false);
    m_hintsPart->hide();
}

QWidget* DebuggingLogsFrame::makeLogPart() {
    auto* clearButton = new IconButton("cxb_refresh_terminal", tr("Clear Log"), nullptr, IconButton::Compact);
    clearButton->setObjectName("cxb_refresh_terminal");
    auto* folderButton =
        new IconButton("cxb_show_winelogs", tr("Open folder of log"), nullptr, IconButton::Compact);
    folderButton->setObjectName("cxb_show_winelogs");
    connect(clearButton, &QToolButton::clicked, this, &DebuggingLogsFrame::cleared);
    connect(clearButton, &QToolButton::clicked, this, &DebuggingLogsFrame::clear);
    connect(folderButton, &QToolButton::clicked, this, &DebuggingLogsFrame::folderRequested);
    auto* nothing = new Label(tr("No debugging logs yet"), Label::Secondary);
    nothing->setAlignment(Qt::AlignCenter);
    m_pages->addWidget(nothing);
    m_pages->addWidget(m_log);
    return makePart(tr("Debug Log"), {m_spinner, clearButton, folderButton}, m_pages);
}

QWidget* DebuggingLogsFrame::makeHintsPart() {
    m_hintsPart = makePart(tr("What you can try"), {}, m_hints);
    return m_hintsPart;
}

void DebuggingLogsFrame::addLines(const QVector<LiveLogLine>& lines, const QTime& time) {
    QVector<LogView::NewLine> newLines;
    newLines.reserve(lines.size());
    for (const LiveLogLine& line : lines) {
        newLines.append({line.text, line.isError ? ErrorLine : PlainLine});
        m_log->skipLines(line.skipped);
    }
    m_pages->setCurrentWidget(m_log);
    m_log->appendLines(newLines, time);
}

void DebuggingLogsFrame::clear() {
    m_log->clear();
    m_pages->setCurrentIndex(0);
    showHints({});
}

void DebuggingLogsFrame::setReading(bool reading) {
    if (reading)
        m_spinner->startDelayed();
    else
        m_spinner->stop();
}

void DebuggingLogsFrame::showHints(const QVector<Hint>& hints) {
    m_hints->showPage(HintHtml::page(hints, BuildInfo::driverHelpUrl()));
    m_hintsPart->setVisible(!hints.isEmpty());
}
