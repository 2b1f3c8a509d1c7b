#include "shell/configuration/page/ConfigPages.h"

#include <QBoxLayout>
#include <QButtonGroup>
#include <QPushButton>
#include <QStackedWidget>

#include "fenk/controls/Label.h"
#include "fenk/controls/SearchEdit.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"

using namespace Fenk;

namespace {
constexpr int SearchWidth = 200;
const char NumberKey[] = "page";
}  // namespace

ConfigPages::ConfigPages(QWidget* parent)
    : QWidget(parent),
      m_buttons(new QButtonGroup(this)),
      m_row(new QHBoxLayout),
      m_pages(new QStackedWidget),
      m_search(new SearchEdit) {
    auto* hint =
        new Label(tr("Setting container to improve the success rate of the application, you can debug "
                     "and preview multiple times."),
                  Label::Secondary);
    hint->setWordWrap(true);
    m_search->setObjectName("settings_search");
    m_search->setPlaceholderText(tr("Search settings"));
    m_search->setAccessibleName(m_search->placeholderText());
    m_search->setFixedWidth(SearchWidth);
    auto* titles = new QHBoxLayout;
    titles->addWidget(new Label(tr("Advanced Debugging Tools"), Label::Heading), 1);
    titles->addWidget(m_search);
    m_row->setSpacing(Tokens::Space8);
    m_row->addStretch();
    auto* head = new QVBoxLayout;
    head->setContentsMargins(Tokens::RingExtent, Tokens::RingExtent, Tokens::Space12, 0);
    head->setSpacing(Tokens::Space8);
    head->addLayout(titles);
    head->addWidget(hint);
    head->addLayout(m_row);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space12);
    layout->addLayout(head);
    layout->addWidget(m_pages, 1);
    connect(m_search, &QLineEdit::textChanged, this, &ConfigPages::searched);
    connect(m_buttons, &QButtonGroup::idClicked, this, &ConfigPages::showPage);
}

void ConfigPages::addPage(int number, const QString& title, QWidget* page) {
    auto* button = new QPushButton(title);
    button->setCheckable(true);
    button->setChecked(m_pages->count() == 0);
    setButtonKind(button, ButtonKind::Quiet);
    m_buttons->addButton(button, number);
    m_row->insertWidget(m_row->count() - 1, button);
    page->setProperty(NumberKey, number);
    m_pages->addWidget(page);
}

void ConfigPages::showPage(int number) {
    QAbstractButton* button = m_buttons->button(number);
    if (!button)
        return;
    button->setChecked(true);
    for (int i = 0; i < m_pages->count(); ++i) {
        if (m_pages->widget(i)->property(NumberKey).toInt() == number)
            m_pages->setCurrentIndex(i);
    }
    Q_EMIT pageShown(number);
}

void ConfigPages::focusSearch() {
    m_search->setFocus(Qt::ShortcutFocusReason);
    m_search->selectAll();
}
