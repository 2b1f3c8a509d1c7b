#include "shell/configuration/page/ToolsPage.h"

#include <QGridLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "shell/configuration/page/BottleCommands.h"
#include "shell/configuration/page/BottlePrograms.h"
#include "widgets/PageArea.h"

using namespace Fenk;

namespace {
constexpr int Columns = 3;
}

ToolsPage::ToolsPage(BottlePrograms* programs, QWidget* parent) : QWidget(parent), m_grid(new QGridLayout) {
    addGroup(tr("Container Operation"));
    for (const BottleCommand& command : BottleCommands::all()) {
        QPushButton* button = addButton(command.text());
        connect(button, &QPushButton::clicked, programs,
                [programs, &command] { command.start(programs, programs->currentRef()); });
        if (command.needsProgram)
            connect(programs, &BottlePrograms::changed, button,
                    [programs, button] { button->setEnabled(programs->list().currentEntry()); });
    }
    addGroup(tr("Other"));
    connect(addButton(tr("Importing the registry")), &QPushButton::clicked, this,
            &ToolsPage::importRequested);
    m_grid->setSpacing(Tokens::Space12);
    for (int column = 0; column < Columns; ++column)
        m_grid->setColumnStretch(column, 1);
    auto* tools = new QWidget;
    auto* content = new QVBoxLayout(tools);
    content->setContentsMargins(Tokens::RingExtent, 0, Tokens::Space12, 0);
    content->addLayout(m_grid);
    content->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(PageArea::around(tools));
    filter({});
}

void ToolsPage::addGroup(const QString& title) {
    m_groups.append(Group{new Label(title, Label::Strong), {}});
}

QPushButton* ToolsPage::addButton(const QString& text) {
    auto* button = new QPushButton(text);
    button->setMinimumHeight(Tokens::RowHeight);
    m_groups.last().buttons.append(button);
    return button;
}

int ToolsPage::filter(const QString& text) {
    int row = 0, count = 0;
    for (const Group& group : qAsConst(m_groups)) {
        m_grid->addWidget(group.title, row, 0, 1, Columns);
        int shown = 0;
        for (QPushButton* button : group.buttons) {
            const bool fits = button->text().contains(text, Qt::CaseInsensitive);
            m_grid->addWidget(button, row + 1 + shown / Columns, shown % Columns);
            button->setVisible(fits);
            shown += fits;
        }
        group.title->setVisible(shown > 0);
        row += 2 + (shown + Columns - 1) / Columns;
        count += shown;
    }
    return count;
}
