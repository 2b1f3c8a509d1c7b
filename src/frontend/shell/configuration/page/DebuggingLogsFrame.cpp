#include "shell/configuration/page/DebuggingLogsFrame.h"

#include <QBoxLayout>
#include <QStackedWidget>

#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "widgets/LogsWidget.h"

using namespace Fenk;

namespace {
constexpr int ErrorLine = 1;
constexpr int PlainLine = 3;
}  // namespace

DebuggingLogsFrame::DebuggingLogsFrame(QWidget* parent)
    : QWidget(parent), m_pages(new QStackedWidget), m_log(new LogsWidget) {
    setObjectName("debugging_logs");
    m_log->setAccessibleName(tr("Debug Log"));
    auto* clearButton = new IconButton("fenk-delete", tr("Clear Log"), nullptr, IconButton::Compact);
    clearButton->setObjectName("cxb_refresh_terminal");
    auto* folderButton =
        new IconButton("fenk-folder", tr("Open folder of log"), nullptr, IconButton::Compact);
    folderButton->setObjectName("cxb_show_winelogs");
    connect(clearButton, &QToolButton::clicked, this, &DebuggingLogsFrame::clear);
    connect(folderButton, &QToolButton::clicked, this, &DebuggingLogsFrame::folderRequested);

    auto* nothing = new Label(tr("No debugging logs yet"), Label::Secondary);
    nothing->setAlignment(Qt::AlignCenter);
    m_pages->addWidget(nothing);
    m_pages->addWidget(m_log);
    auto* head = new QHBoxLayout;
    head->setSpacing(Tokens::Space4);
    head->addWidget(new Label(tr("Debug Log"), Label::Strong), 1);
    head->addWidget(clearButton);
    head->addWidget(folderButton);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Tokens::RingExtent, Tokens::Space8, Tokens::Space12, 0);
    layout->setSpacing(Tokens::Space4);
    layout->addLayout(head);
    layout->addWidget(m_pages, 1);
}

void DebuggingLogsFrame::append(const QString& line, bool isError) {
    m_pages->setCurrentWidget(m_log);
    m_log->appendLine(line, isError ? ErrorLine : PlainLine);
}

void DebuggingLogsFrame::clear() {
    m_log->clear();
    m_pages->setCurrentIndex(0);
}
