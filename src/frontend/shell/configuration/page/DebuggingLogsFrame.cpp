#include "shell/configuration/page/DebuggingLogsFrame.h"

#include <QBoxLayout>
#include <QLocale>
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

constexpr int ErrorLine = 1;
constexpr int PlainLine = 3;
constexpr int LogShare = 3;  ///< of five parts of the width
constexpr int HintsShare = 2;

QString helpUrl() {
    const bool isChinese = QLocale().name().startsWith(QLatin1String("zh"));
    return BuildInfo::driverHelpUrl().arg(isChinese ? "cn" : "en");
}

}  // namespace

DebuggingLogsFrame::DebuggingLogsFrame(QWidget* parent)
    : QWidget(parent),
      m_pages(new QStackedWidget),
      m_log(new DebuggingLogsEdit),
      m_hints(new DebuggingLogsView),
      m_spinner(new Spinner) {
    setObjectName("debugging_logs");
    auto* nothing = new Label(tr("No debugging logs yet"), Label::Secondary);
    nothing->setAlignment(Qt::AlignCenter);
    m_pages->addWidget(nothing);
    m_pages->addWidget(m_log);
    auto* splitter = new CustomSPitter(Qt::Horizontal);
    splitter->addWidget(m_pages);
    splitter->addWidget(makeHintsPart());
    splitter->setStretchFactor(0, LogShare);
    splitter->setStretchFactor(1, HintsShare);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Tokens::RingExtent, Tokens::Space4, Tokens::Space12, 0);
    layout->setSpacing(Tokens::Space4);
    layout->addWidget(makeHead());
    layout->addWidget(splitter, 1);
    connect(m_hints, &QTextBrowser::anchorClicked, this, &DebuggingLogsFrame::anchorClicked);
    m_spinner->setToolTip(tr("Looking for hints in the log"));
    m_spinner->setAccessibleName(m_spinner->toolTip());
    setReading(false);
    m_hintsPart->hide();
}

QWidget* DebuggingLogsFrame::makeHead() {
    auto* clearButton = new IconButton("fenk-delete", tr("Clear Log"), nullptr, IconButton::Compact);
    clearButton->setObjectName("cxb_refresh_terminal");
    auto* folderButton =
        new IconButton("fenk-folder", tr("Open folder of log"), nullptr, IconButton::Compact);
    folderButton->setObjectName("cxb_show_winelogs");
    connect(clearButton, &QToolButton::clicked, this, &DebuggingLogsFrame::clear);
    connect(folderButton, &QToolButton::clicked, this, &DebuggingLogsFrame::folderRequested);
    auto* head = new QWidget;
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Tokens::Space8);
    row->addWidget(new Label(tr("Debug Log"), Label::Strong), 1);
    row->addWidget(m_spinner);
    row->addWidget(clearButton);
    row->addWidget(folderButton);
    return head;
}

QWidget* DebuggingLogsFrame::makeHintsPart() {
    m_hintsPart = new QWidget;
    auto* layout = new QVBoxLayout(m_hintsPart);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space4);
    layout->addWidget(new Label(tr("What you can try"), Label::Strong));
    layout->addWidget(m_hints, 1);
    return m_hintsPart;
}

void DebuggingLogsFrame::append(const QVector<LiveLogLine>& lines) {
    QVector<LogView::NewLine> newLines;
    newLines.reserve(lines.size());
    for (const LiveLogLine& line : lines)
        newLines.append({line.text, line.isError ? ErrorLine : PlainLine});
    m_pages->setCurrentWidget(m_log);
    m_log->appendLines(newLines);
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
    m_hints->showPage(HintHtml::page(hints, helpUrl()));
    m_hintsPart->setVisible(!hints.isEmpty());
}
