#include "shell/configuration/components/ComponentsPage.h"

#include <QHBoxLayout>
#include <QJsonObject>
#include <QStackedWidget>
#include <QToolButton>

#include "backend/BottleRecord.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/SearchEdit.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "launch/banner/RunningProgramsQuestion.h"
#include "programs/ListPlaceholder.h"
#include "shell/configuration/components/BottleDependencies.h"
#include "shell/configuration/components/ComponentDetails.h"
#include "shell/configuration/components/ComponentsListView.h"
#include "shell/configuration/components/DependencyFacts.h"
#include "shell/configuration/components/InstallingTips.h"

using namespace Fenk;

namespace {

QToolButton* makeDepsButton(const QString& word, const QString& tip) {
    auto* button = new QToolButton;
    button->setIcon(Theme::icon("cxb_import_deps"));
    button->setIconSize({Tokens::IconMedium, Tokens::IconMedium});
    button->setText(word);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setToolTip(tip);
    button->setAccessibleName(tip);
    button->setAutoRaise(true);
    return button;
}

}  // namespace

ComponentsPage::ComponentsPage(QWidget* parent)
    : QWidget(parent),
      m_list(new ComponentsListView),
      m_search(new SearchEdit),
      m_area(new QStackedWidget),
      m_nothing(new ListPlaceholder(
          Theme::icon("fenk-search"),
          m_list->hasRows() ? tr("No component has been found")
                            : tr("The list of components is missing. Please install Cellarix again."))) {
    setObjectName("components_page");
    m_area->setObjectName("components_area");
    m_area->addWidget(m_list);
    m_area->addWidget(m_nothing);
    m_nothing->setObjectName("components_placeholder");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Tokens::RingExtent, 0, Tokens::Space12, 0);
    layout->setSpacing(Tokens::Space8);
    layout->addWidget(makeHead());
    layout->addWidget(m_area, 1);
    layout->addWidget(new ComponentDetails(m_list, this));
    connect(m_search, &QLineEdit::textChanged, this, &ComponentsPage::search);
    connect(m_search, &QLineEdit::returnPressed, m_list, qOverload<>(&QWidget::setFocus));
    connect(m_list->dependencies(), &BottleDependencies::programsRunning, this,
            &ComponentsPage::askAboutPrograms);
    connect(m_list, &ComponentsListView::setupDone, this, &ComponentsPage::describe);
    search({});
}

QWidget* ComponentsPage::makeHead() {
    auto* head = new QWidget;
    // What is being installed takes the place of the tip, so that nothing moves.
    auto* above = new QStackedWidget;
    above->setFixedHeight(Tokens::ControlHeight + 2 * Tokens::RingExtent);
    BottleDependencies* dependencies = m_list->dependencies();
    connect(dependencies, &BottleDependencies::queueChanged, above, [above, dependencies] {
        above->setCurrentIndex(dependencies->states().queue().isEmpty() ? 0 : 1);
    });
    auto* tip = new Label(
        tr("Install the recommended system components to improve the success rate of the application."),
        Label::Secondary);
    tip->setWordWrap(true);
    above->addWidget(tip);
    above->addWidget(new InstallingTips(dependencies));
    m_search->setObjectName("components_search_edit");
    m_search->setPlaceholderText(tr("Search by name, description or DLL"));
    m_search->setAccessibleName(m_search->placeholderText());
    auto* importButton = makeDepsButton(tr("Import"), tr("Import the components that app needed"));
    auto* exportButton = makeDepsButton(tr("Export"), tr("Export the components that installed"));
    importButton->setObjectName("import_deps_btn");
    exportButton->setObjectName("export_deps_btn");
    connect(importButton, &QToolButton::clicked, this, &ComponentsPage::importRequested);
    connect(exportButton, &QToolButton::clicked, this, &ComponentsPage::exportRequested);
    auto* row = new QHBoxLayout;
    row->setSpacing(Tokens::Space8);
    row->addWidget(m_search, 1);
    row->addWidget(importButton);
    row->addWidget(exportButton);
    auto* layout = new QVBoxLayout(head);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space4);
    layout->addWidget(above);
    layout->addLayout(row);
    return head;
}

void ComponentsPage::setBottle(const QString& bottle, const QJsonObject& record) {
    m_list->setBottle(bottle);
    m_list->load(BottleRecord::installedDependencies(record));
    if (isVisible())
        describe();
}

void ComponentsPage::search(const QString& text) {
    const QString wanted = text.trimmed();
    m_list->filter(wanted);
    m_list->select(m_list->names().contains(wanted) ? wanted : m_list->currentName());
    m_area->setCurrentWidget(m_list->currentName().isEmpty() ? static_cast<QWidget*>(m_nothing) : m_list);
}

int ComponentsPage::filter(const QString& text) {
    m_search->setText(text);
    search(text);  // also where the field had this text before
    return m_list->model()->rowCount();
}

/// Only a page that is looked at asks what all of them would bring.
void ComponentsPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    describe();
}

void ComponentsPage::describe() {
    if (isVisible() && !m_list->dependencies()->bottle().isEmpty())
        m_list->dependencies()->facts()->fetch(m_list->names());
}

void ComponentsPage::askAboutPrograms(const QStringList& programs) {
    BottleDependencies* dependencies = m_list->dependencies();
    auto* question = new RunningProgramsQuestion(dependencies->bottle(), programs, window());
    question->setMessage(
        tr("Components can only be installed while nothing runs in the container. These programs have to "
           "be closed first: what has not been saved in them will be lost."));
    connect(question, &RunningProgramsQuestion::answered, dependencies,
            &BottleDependencies::answerProgramsRunning);
    question->open();
}
