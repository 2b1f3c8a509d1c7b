#include "GalleryWindow.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QScrollArea>
#include <QStackedWidget>

#include "Pages.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/SearchEdit.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "fenk/window/TitleBar.h"

using namespace Fenk;

namespace Gallery {

namespace {

const struct {
    const char* name;
    const char* title;
    const char* icon;
    QWidget* (*make)();
} Pages[] = {{"controls", "Controls", "fenk-edit", makeControlsPage},
             {"lists", "Lists", "fenk-menu", makeListsPage},
             {"settings", "Settings", "fenk-settings", makeSettingsPage},
             {"colors", "Colours and type", "fenk-info", makeColorsPage}};

QWidget* framed(const QString& title, QWidget* content) {
    auto* inside = new QWidget;
    auto* layout = new QVBoxLayout(inside);
    layout->setContentsMargins(Tokens::Space24, Tokens::Space16, Tokens::Space24, Tokens::Space24);
    layout->setSpacing(Tokens::Space16);
    layout->addWidget(new Label(title, Label::Title));
    layout->addWidget(content, 1);
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(inside);
    area->viewport()->setAutoFillBackground(false);
    inside->setAutoFillBackground(false);
    return area;
}

}  // namespace

GalleryWindow::GalleryWindow(QWidget* parent)
    : MainWindow(parent), m_sidebar(new QListWidget), m_pages(new QStackedWidget) {
    setWindowTitle("Fenk gallery");
    setAccessibleName("Fenk gallery");
    setWindowIcon(Theme::icon("cellarix"));
    auto* search = new SearchEdit;
    search->setMinimumWidth(360);
    titlebar()->setCustomWidget(search);
    titlebar()->setSeparatorVisible(true);

    setSidebarLook(m_sidebar);
    m_sidebar->setFixedWidth(200);
    m_sidebar->setAccessibleName("Pages");
    for (const auto& page : Pages) {
        m_sidebar->addItem(new QListWidgetItem(Theme::icon(page.icon), page.title));
        m_pages->addWidget(framed(page.title, page.make()));
    }
    connect(m_sidebar, &QListWidget::currentRowChanged, m_pages, &QStackedWidget::setCurrentIndex);
    m_sidebar->setCurrentRow(0);

    auto* central = new QWidget;
    auto* layout = new QHBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* side = new QWidget;
    side->setBackgroundRole(QPalette::Midlight);
    side->setAutoFillBackground(true);
    auto* sideLayout = new QVBoxLayout(side);
    sideLayout->setContentsMargins(0, Tokens::Space8, 0, Tokens::Space8);
    sideLayout->addWidget(m_sidebar);
    layout->addWidget(side);
    layout->addWidget(m_pages, 1);
    setCentralWidget(central);
    resize(1240, 768);
}

QStringList GalleryWindow::pageNames() {
    QStringList names;
    for (const auto& page : Pages)
        names << page.name;
    return names;
}

bool GalleryWindow::showPage(const QString& name) {
    const int index = pageNames().indexOf(name);
    if (index >= 0)
        m_sidebar->setCurrentRow(index);
    return index >= 0;
}

QWidget* GalleryWindow::page(int index) const {
    return m_pages->widget(index);
}

}  // namespace Gallery
