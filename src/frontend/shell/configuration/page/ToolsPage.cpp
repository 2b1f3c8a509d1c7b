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
        if (command.isTerminal)
            connect(button, &QPushButton::clicked, this, &ToolsPage::terminalRequested);
        else
            connect(button, &QPushButton::clicked, programs,
                    [programs, &command] { command.start(programs, programs->currentRef()); });
        if (command.needsProgram)
            connect(programs, &BottlePrograms::changed, button,
                    [programs, button] { button->setEnabled(programs->list().currentEntry()); });
    }
    addGroup(tr("Other"));
    connect(addButton(tr("Importing the registry")), &QPushButton::clicked, this,
            &ToolsPage::importRequested);
    m_package = addButton(tr("Package…"));
    m_package->setObjectName("package_bottle_btn");
    connect(m_package, &QPushButton::clicked, this, &ToolsPage::packagingRequested);
    QPushButton* reset = addButton(tr("Reset to Defaults…"));
    reset->setObjectName("reset_bottle_btn");
    connect(reset, &QPushButton::clicked, this, &ToolsPage::resetRequested);
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

void ToolsPage::setPackagingOffered(bool isOffered) {
    m_isPackagingOffered = isOffered;
    filter(m_filter);
}

int ToolsPage::filter(const QString& text) {
    m_filter = text;
    int row = 0, count = 0;
    for (const Group& group : qAsConst(m_groups)) {
        m_grid->addWidget(group.title, row, 0, 1, Columns);
        int shown = 0;
        for (QPushButton* button : group.buttons) {
            const bool fits = button->text().contains(text, Qt::CaseInsensitive) &&
                              (button != m_package || m_isPackagingOffered);
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
