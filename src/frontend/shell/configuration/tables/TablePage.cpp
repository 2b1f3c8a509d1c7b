#include "shell/configuration/tables/TablePage.h"

#include <QContextMenuEvent>
#include <QStackedWidget>
#include <QStandardItemModel>
#include <QVBoxLayout>

#include "fenk/controls/Card.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "programs/ListPlaceholder.h"
#include "shell/configuration/tables/BottleTable.h"

using namespace Fenk;

TablePage::TablePage(const QString& name, const QString& icon, const Texts& texts, BottleTable* table,
                     QWidget* parent)
    : QWidget(parent),
      m_table(table),
      m_words(texts.tip + '\n' + texts.add),
      m_add(new IconButton("fenk-add", texts.add)),
      m_tools(new QHBoxLayout),
      m_stack(new QStackedWidget),
      m_empty(new ListPlaceholder(Theme::icon(icon), texts.empty, texts.add)),
      m_failed(new ListPlaceholder(Theme::icon("fenk-error"),
                                   tr("The list of this container cannot be read at the moment."),
                                   tr("Retry"))),
      m_buttons{m_add} {
    setObjectName(name + "_area");
    m_add->setObjectName(name + "_addbtn");
    auto* tip = new Label(texts.tip, Label::Secondary);
    tip->setWordWrap(true);
    m_tools->setSpacing(Tokens::Space8);
    m_tools->addWidget(tip, 1);
    m_tools->addWidget(m_add);
    m_stack->addWidget(m_table);
    m_stack->addWidget(m_empty);
    m_stack->addWidget(m_failed);
    auto* frame = new Card;
    frame->setObjectName(name + "_listview_frame");
    frame->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
    frame->addRow(m_stack);
    frame->layout()->setContentsMargins(Tokens::Space4, Tokens::Space4, Tokens::Space4, Tokens::Space4);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Tokens::RingExtent, 0, Tokens::Space12, Tokens::Space8);
    layout->setSpacing(Tokens::Space8);
    layout->addLayout(m_tools);
    layout->addWidget(frame, 1);
    connect(m_add, &QToolButton::clicked, this, &TablePage::addRequested);
    connect(m_empty, &ListPlaceholder::pressed, this, &TablePage::addRequested);
    connect(m_failed, &ListPlaceholder::pressed, m_table, &BottleTable::load);
    connect(m_table, &BottleTable::countChanged, this, &TablePage::refresh);
    connect(m_table, &BottleTable::loaded, this, &TablePage::refresh);
    connect(m_table, &BottleTable::refused, this, &TablePage::showError);
    refresh();
}

void TablePage::addTool(QWidget* button) {
    m_tools->insertWidget(m_tools->count() - 1, button);
    m_buttons << button;
}

void TablePage::showError(const QString& errorText) {
    FloatingMessage::show(this, Theme::icon("fenk-error"), errorText);
}

/// Of the placeholder: the menu may have a way to fill the list.
void TablePage::contextMenuEvent(QContextMenuEvent* event) {
    if (m_stack->currentWidget() == m_empty &&
        m_empty->geometry().contains(m_stack->mapFromGlobal(event->globalPos())))
        m_table->openMenu(event->globalPos(), event->reason() == QContextMenuEvent::Keyboard);
    else
        event->ignore();
}

int TablePage::filter(const QString& text) {
    m_filter = text;
    const QStandardItemModel* rows = m_table->rows();
    const bool isPage = m_words.contains(text, Qt::CaseInsensitive);
    int count = isPage ? 1 : 0;
    for (int row = 0; row < rows->rowCount(); ++row) {
        bool fits = isPage;
        for (int column = 0; column < rows->columnCount(); ++column)
            fits = fits || rows->index(row, column).data().toString().contains(text, Qt::CaseInsensitive);
        m_table->setRowHidden(row, !fits);
        count += fits;
    }
    return count;
}

void TablePage::refresh() {
    const bool hadFocus = m_stack->isAncestorOf(focusWidget());
    const QWidget* before = m_stack->currentWidget();
    const bool isEmpty = m_table->rows()->rowCount() == 0, isUnread = !m_table->errorText().isEmpty();
    if (!m_filter.isEmpty())
        filter(QString(m_filter));
    m_failed->setDetail(m_table->errorText());
    for (QWidget* button : qAsConst(m_buttons))
        button->setEnabled(!isUnread);
    m_stack->setCurrentWidget(isUnread ? m_failed : isEmpty ? static_cast<QWidget*>(m_empty) : m_table);
    if (hadFocus && m_stack->currentWidget() != before)
        m_stack->currentWidget()->setFocus();
}
