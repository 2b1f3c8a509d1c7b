#include "shell/configuration/page/ConfigPages.h"

#include <QBoxLayout>
#include <QButtonGroup>
#include <QPushButton>
#include <QStackedWidget>

#include "fenk/controls/Label.h"
#include "fenk/controls/SearchEdit.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "shell/configuration/rules/SearchedPage.h"

using namespace Fenk;

namespace {
constexpr int SearchWidth = 200;
const char NumberKey[] = "page";

/// Shows only what matches in the page. Whether anything does.
bool filterPage(QWidget* page, const QString& text) {
    auto* searched = dynamic_cast<SearchedPage*>(page);
    return searched && searched->filter(text) > 0;
}

}  // namespace

ConfigPages::ConfigPages(QWidget* parent)
    : QWidget(parent),
      m_buttons(new QButtonGroup(this)),
      m_row(new QHBoxLayout),
      m_pages(new QStackedWidget),
      m_search(new SearchEdit),
      m_nothing(new Label(tr("Nothing has been found"), Label::Secondary)) {
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
    m_row->setSpacing(Tokens::Space4);
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
    m_nothing->setObjectName("nothing_found");
    m_nothing->setAlignment(Qt::AlignCenter);
    m_nothing->hide();
    layout->addWidget(m_nothing);
    layout->addWidget(m_pages, 1);
    connect(m_search, &QLineEdit::textChanged, this, &ConfigPages::search);
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

QWidget* ConfigPages::page(int number) const {
    for (int i = 0; i < m_pages->count(); ++i) {
        if (m_pages->widget(i)->property(NumberKey).toInt() == number)
            return m_pages->widget(i);
    }
    return nullptr;
}

void ConfigPages::showPage(int number) {
    QWidget* shown = page(number);
    if (!shown)
        return;
    QAbstractButton* button = m_buttons->button(number);
    button->setChecked(true);
    // Tab reaches the chosen button, arrow keys the others, also when a link has chosen it.
    for (QAbstractButton* other : m_buttons->buttons())
        other->setFocusPolicy(other == button ? Qt::StrongFocus : Qt::ClickFocus);
    m_pages->setCurrentWidget(shown);
    m_nothing->setVisible(m_empty.contains(shown));
    Q_EMIT pageShown(number);
}

void ConfigPages::showMatches(int number, const QString& text) {
    QWidget* shown = page(number);
    if (!shown)
        return;
    m_empty.removeAll(shown);  // the page says itself when it has nothing
    showPage(number);
    filterPage(shown, text);
}

void ConfigPages::search(const QString& text) {
    const QString wanted = text.trimmed();
    QVector<QWidget*> found;
    m_empty.clear();
    for (int i = 0; i < m_pages->count(); ++i) {
        if (filterPage(m_pages->widget(i), wanted))
            found.append(m_pages->widget(i));
        else if (!wanted.isEmpty())
            m_empty.append(m_pages->widget(i));
    }
    m_nothing->setVisible(m_empty.contains(m_pages->currentWidget()));
    if (!m_nothing->isHidden() && !found.isEmpty())
        showPage(found.first()->property(NumberKey).toInt());
}

void ConfigPages::focusSearch() {
    m_search->setFocus(Qt::ShortcutFocusReason);
    m_search->selectAll();
}
