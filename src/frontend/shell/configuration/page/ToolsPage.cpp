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

ToolsPage::ToolsPage(BottlePrograms* programs, QWidget* parent) : QWidget(parent) {
    auto* tools = new QWidget;
    auto* grid = new QGridLayout(tools);
    grid->setContentsMargins(Tokens::RingExtent, 0, Tokens::Space12, 0);
    grid->setSpacing(Tokens::Space12);
    const auto addButton = [grid](const QString& text, int row, int column) {
        auto* button = new QPushButton(text);
        button->setMinimumHeight(Tokens::RowHeight);
        grid->addWidget(button, row, column);
        return button;
    };
    grid->addWidget(new Label(tr("Container Operation"), Label::Strong), 0, 0, 1, Columns);
    int count = 0;
    for (const BottleCommand& command : BottleCommands::all()) {
        QPushButton* button = addButton(command.text(), 1 + count / Columns, count % Columns);
        connect(button, &QPushButton::clicked, programs, [programs, &command] { command.start(programs, programs->currentRef()); });
        if (command.needsProgram)
            connect(programs, &BottlePrograms::changed, button,
                    [programs, button] { button->setEnabled(programs->list().currentEntry()); });
        ++count;
    }
    const int below = 1 + (count + Columns - 1) / Columns;
    grid->addWidget(new Label(tr("Other"), Label::Strong), below, 0, 1, Columns);
    connect(addButton(tr("Importing the registry"), below + 1, 0), &QPushButton::clicked, this,
            &ToolsPage::importRequested);
    for (int column = 0; column < Columns; ++column)
        grid->setColumnStretch(column, 1);
    grid->setRowStretch(below + 2, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(PageArea::around(tools));
}
