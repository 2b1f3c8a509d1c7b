#include "shell/configuration/page/EntriesColumn.h"

#include <QBoxLayout>
#include <QPainter>
#include <QScrollArea>

#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "programs/ProgramRuns.h"
#include "shell/configuration/page/AppEntryButton.h"
#include "shell/configuration/page/BottlePrograms.h"
#include "widgets/PageArea.h"

using namespace Fenk;

EntriesColumn::EntriesColumn(BottlePrograms* programs, QWidget* parent)
    : QWidget(parent),
      m_programs(programs),
      m_title(new Label(tr("Application list"), Label::Strong)),
      m_hint(new Label(tr("Apps shown in launcher (click the \"+\" buttons to add apps and shortcuts)"),
                       Label::Small)),
      m_add(new IconButton("fenk-add", tr("Add an application"), nullptr, IconButton::Compact)),
      m_toggle(new IconButton("fenk-back", QString(), nullptr, IconButton::Compact)) {
    setObjectName("entries_column");
    m_title->setElided(true);
    m_title->setContentsMargins(Tokens::Space8, 0, 0, 0);
    m_hint->setWordWrap(true);
    m_hint->setContentsMargins(Tokens::Space8, 0, Tokens::Space8, Tokens::Space4);
    m_add->setObjectName("add_entry_btn");
    m_toggle->setObjectName("expand_toolbar_btn");
    connect(m_add, &QToolButton::clicked, this, &EntriesColumn::addRequested);
    connect(m_toggle, &QToolButton::clicked, this, &EntriesColumn::toggleRequested);

    auto* entries = new QWidget;
    m_list = new QVBoxLayout(entries);
    m_list->setContentsMargins(Tokens::RingExtent, Tokens::RingExtent, Tokens::RingExtent,
                               Tokens::RingExtent);
    m_list->setSpacing(0);
    m_list->addStretch();
    auto* head = new QHBoxLayout;
    head->setSpacing(0);
    head->addWidget(m_title, 1);
    head->addWidget(m_add);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Tokens::Space12, Tokens::Space12, Tokens::Space8, Tokens::Space12);
    layout->setSpacing(Tokens::Space4);
    layout->addLayout(head);
    layout->addWidget(m_hint);
    layout->addWidget(PageArea::around(entries), 1);
    layout->addWidget(m_toggle, 0, Qt::AlignLeft);
    connect(programs, &BottlePrograms::changed, this, &EntriesColumn::refresh);
    connect(ProgramRuns::instance(), &ProgramRuns::changed, this, &EntriesColumn::refresh);
    setNarrow(false);
    refresh();
}

void EntriesColumn::setNarrow(bool narrow) {
    m_isNarrow = narrow;
    m_title->setVisible(!narrow);
    m_hint->setVisible(!narrow);
    m_toggle->setIconName(narrow ? "fenk-forward" : "fenk-back");
    m_toggle->setWord(narrow ? tr("Show names") : tr("Show icons only"));
    for (AppEntryButton* button : m_buttons)
        button->setNarrow(narrow);
}

AppEntryButton* EntriesColumn::makeButton(const QString& id) {
    auto* button = new AppEntryButton(id);
    button->setNarrow(m_isNarrow);
    connect(button, &QAbstractButton::clicked, this, [this, button] { Q_EMIT clicked(button); });
    connect(button, &AppEntryButton::menuRequested, this,
            [this, button](const QPoint& at) { Q_EMIT menuRequested(button, at); });
    return button;
}

/// Keeps the button of a program that is still there, and with it the focus.
void EntriesColumn::refresh() {
    const EntryList& list = m_programs->list();
    for (int i = 0; i < list.entries().size(); ++i) {
        const ProgramEntry& entry = list.entries()[i];
        while (i < m_buttons.size() && list.indexOf(m_buttons[i]->id()) != i)
            delete m_buttons.takeAt(i);
        if (i == m_buttons.size()) {
            m_buttons.append(makeButton(entry.id));
            m_list->insertWidget(i, m_buttons.last());
        }
        m_buttons[i]->setEntry(entry);
        m_buttons[i]->setRunning(ProgramRuns::instance()->isRunning(m_programs->ref(entry)));
        m_buttons[i]->setChecked(i == list.current());
    }
    while (m_buttons.size() > list.entries().size())
        delete m_buttons.takeLast();
}

void EntriesColumn::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::box(&painter, rect().adjusted(Tokens::Space4, 0, 0, -Tokens::Space4), Tokens::RadiusCard,
               Paint::color(Theme::Sunken));
}
