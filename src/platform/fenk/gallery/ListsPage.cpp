#include <QGroupBox>
#include <QHeaderView>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "Pages.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

namespace Gallery {

namespace {

QTableWidget* makeTable() {
    const QList<QStringList> rows = {{"Visual C++ 2022", "14.40", "Installed"},
                                     {"DirectX 9", "9.0c", "Not installed"},
                                     {"Core fonts", "1.0", "Installed"},
                                     {"Media codecs", "2.3", "Failed"},
                                     {".NET Framework", "4.8", "Not installed"}};
    auto* table = new QTableWidget(rows.size(), 3);
    table->setAccessibleName("Components");
    table->setHorizontalHeaderLabels({"Component", "Version", "State"});
    table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    table->horizontalHeader()->setSortIndicator(0, Qt::AscendingOrder);
    table->horizontalHeader()->setSortIndicatorShown(true);
    for (int column : {1, 2})
        table->horizontalHeader()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    table->setWordWrap(false);
    table->verticalHeader()->hide();
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    for (int row = 0; row < rows.size(); ++row) {
        for (int column = 0; column < 3; ++column)
            table->setItem(row, column, new QTableWidgetItem(rows[row][column]));
        table->item(row, 0)->setCheckState(row % 2 ? Qt::Unchecked : Qt::Checked);
    }
    table->selectRow(1);
    return table;
}

QTreeWidget* makeTree() {
    auto* tree = new QTreeWidget;
    tree->setAccessibleName("Bottles");
    tree->setHeaderHidden(true);
    for (const char* bottle : {"Office", "Drawing"}) {
        auto* top = new QTreeWidgetItem(tree, {bottle});
        top->setIcon(0, Theme::icon("fenk-folder"));
        for (const char* program : {"Editor", "Viewer"})
            new QTreeWidgetItem(top, {program});
    }
    tree->topLevelItem(0)->setExpanded(true);
    tree->setCurrentItem(tree->topLevelItem(0));
    return tree;
}

}  // namespace

QWidget* makeListsPage() {
    auto* page = new QWidget;
    auto* columns = new QHBoxLayout(page);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(Tokens::Space24);
    auto* left = new QVBoxLayout;
    left->setSpacing(Tokens::Space8);
    left->addWidget(new Label("Table", Label::Heading));
    left->addWidget(makeTable(), 1);
    auto* right = new QVBoxLayout;
    right->setSpacing(Tokens::Space8);
    right->addWidget(new Label("Tree", Label::Heading));
    right->addWidget(makeTree(), 1);
    auto* tabs = new QTabWidget;
    for (const char* name : {"General", "Components", "Log"}) {
        auto* words = new Label(QString("Everything about %1 stands here.").arg(name), Label::Secondary);
        words->setContentsMargins(Tokens::Space16, Tokens::Space16, Tokens::Space16, Tokens::Space16);
        words->setAlignment(Qt::AlignTop | Qt::AlignLeft);
        tabs->addTab(words, name);
    }
    tabs->setFixedHeight(112);
    right->addWidget(tabs);
    auto* group = new QGroupBox("Run with overrides");
    group->setCheckable(true);
    auto* inside = new QVBoxLayout(group);
    inside->addWidget(new Label("A library of the program's own comes first.", Label::Secondary));
    right->addWidget(group);
    columns->addLayout(left, 3);
    columns->addLayout(right, 2);
    return page;
}

}  // namespace Gallery
