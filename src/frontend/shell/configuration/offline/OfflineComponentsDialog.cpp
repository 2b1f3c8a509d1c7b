#include "shell/configuration/offline/OfflineComponentsDialog.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "backend/ServiceLoss.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "programs/ListPlaceholder.h"
#include "shell/configuration/offline/OfflineComponentsHeaderView.h"
#include "shell/configuration/offline/OfflineComponentsListView.h"
#include "shell/configuration/offline/OfflineComponentsModel.h"

using namespace Fenk;

namespace {

constexpr int ShownRows = 6;
constexpr int MaximumReasons = 2;  // the others are in the tool tips of their rows

}  // namespace

OfflineComponentsDialog::OfflineComponentsDialog(Transfer transfer, const Words& words, const QString& bottle,
                                                 QWidget* parent)
    : Dialog(words.title, QString(), parent),
      m_transfer(transfer),
      m_words(words),
      m_bottle(bottle),
      m_model(new OfflineComponentsModel(this)),
      m_list(new OfflineComponentsListView(m_model)),
      m_pages(new QStackedWidget),
      m_waiting(new QWidget),
      m_titleRow(new QHBoxLayout),
      m_table(makeTable()),
      m_spinner(new Spinner),
      m_note(new Label(Label::Small)) {
    setFixedWidth(Tokens::DialogMaxWidth);
    auto* middle = new QVBoxLayout(m_waiting);
    middle->addWidget(m_spinner, 0, Qt::AlignCenter);
    m_pages->addWidget(m_waiting);
    m_pages->addWidget(m_table);
    m_pages->setFixedHeight(Tokens::ControlHeight + Tokens::Space8 + Tokens::HeadHeight +
                            ShownRows * Tokens::RowHeight);
    addContent(m_pages);
    m_note->setObjectName("offline_components_note");
    m_note->setReadingWidth(Tokens::DialogMaxWidth - 2 * Tokens::Space24);
    m_note->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_note->hide();
    addContent(m_note);

    setOnButtonClickedClose(false);
    m_close = addButton(tr("Cancel"));
    m_main = addButton(words.start, true, ButtonRecommend);
    m_stop = addButton(tr("Stop"));
    connect(this, &Dialog::buttonClicked, this, [this](int index) {
        if (index == m_main)
            onMainClicked();
        else if (index == m_stop)
            stop();
        else
            reject();
    });
    connect(m_model, &OfflineComponentsModel::ticked, this, &OfflineComponentsDialog::onTicked);
    connect(m_model, &OfflineComponentsModel::checkedCountChanged, this, [this](int count) {
        if (m_phase == Phase::Choosing)
            button(m_main)->setEnabled(count > 0);
    });
    connect(OfflineDependency::instance(), &OfflineDependency::progressNotified, this,
            &OfflineComponentsDialog::onProgress);
    whenServiceIsLost(this, [this] { onServiceLost(); });
    setPhase(Phase::Loading);
}

QWidget* OfflineComponentsDialog::makeTable() {
    auto* table = new QWidget;
    m_titleRow->addWidget(new Label(tr("Offline Components"), Label::Strong), 1);
    auto* column = new QVBoxLayout(table);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Tokens::Space8);
    column->addLayout(m_titleRow);
    column->addWidget(m_list, 1);
    return table;
}

void OfflineComponentsDialog::addToTableTitle(QWidget* widget) {
    m_titleRow->addWidget(widget);
}

void OfflineComponentsDialog::setPhase(Phase phase) {
    m_phase = phase;
    const bool isDone = phase == Phase::Done;
    m_model->setChoosing(phase == Phase::Loading || phase == Phase::Choosing);
    m_list->head()->setCheckable(phase == Phase::Choosing);
    button(m_main)->setText(isDone ? m_words.end : m_words.start);
    button(m_main)->setAccessibleName(button(m_main)->text());
    button(m_main)->setVisible(phase != Phase::Running);
    button(m_stop)->setVisible(phase == Phase::Running);
    button(m_stop)->setEnabled(true);
    button(m_main)->setEnabled(isDone || (phase == Phase::Choosing && !m_model->checkedNames().isEmpty()));
    // Closing does not stop what the service does.
    button(m_close)->setText(phase == Phase::Running ? tr("Close") : tr("Cancel"));
    button(m_close)->setAccessibleName(button(m_close)->text());
    button(m_close)->setVisible(!isDone);
    if (isDone)
        button(m_main)->setFocus();
}

void OfflineComponentsDialog::attach() {
    showWaiting();
    auto* service = OfflineDependency::instance();
    service->isRunning(m_transfer, this, [this, service](const BusResult& result) {
        if (!result.ok)
            showFailure(result);
        else if (result.text != "true")
            offer();
        else
            service->status(m_transfer, this, [this](const BusResult& states) { reattach(states.object()); });
    });
}

void OfflineComponentsDialog::reattach(const QJsonObject& states) {
    if (states.isEmpty()) {
        offer();
        return;
    }
    showComponents(states.keys(), false);
    setPhase(Phase::Running);
    for (auto it = states.begin(); it != states.end(); ++it)
        m_model->setState(it.key(), OfflineComponentState::of(m_transfer, it.value().toObject()));
    endIfDone();
}

void OfflineComponentsDialog::showWaiting() {
    setPhase(Phase::Loading);
    setNote({}, false);
    m_pages->setCurrentWidget(m_waiting);
    m_spinner->startDelayed();
}

void OfflineComponentsDialog::showPage(QWidget* page, Leads leads) {
    delete std::exchange(m_page, page);
    m_pages->addWidget(page);
    m_pages->setCurrentWidget(page);
    m_spinner->stop();
    button(m_main)->setVisible(leads == Leads::ToChoice);
}

void OfflineComponentsDialog::showFailure(const BusResult& result) {
    auto* page = new ListPlaceholder(Theme::icon("fenk-error"), result.errorText(), tr("Retry"));
    // Later, since the page of the button is deleted.
    connect(page, &ListPlaceholder::pressed, this, &OfflineComponentsDialog::attach, Qt::QueuedConnection);
    showPage(page, Leads::Nowhere);
}

void OfflineComponentsDialog::showComponents(const QStringList& names, bool areChecked) {
    m_spinner->stop();
    m_model->setComponents(names, areChecked);
    m_pages->setCurrentWidget(m_table);
    m_list->setCurrentIndex(m_model->index(0, OfflineComponentsModel::Name));
    setPhase(Phase::Choosing);
    m_list->setFocus();
}

void OfflineComponentsDialog::setNote(const QString& text, bool isFailure) {
    m_note->setTextRole(isFailure ? Theme::Danger : Theme::Secondary);
    m_note->setText(text);
    m_note->setVisible(!text.isEmpty());
    m_note->setAccessibleName(text);
    adjustSize();
}

void OfflineComponentsDialog::onMainClicked() {
    if (m_phase == Phase::Done)
        done(m_main);
    else if (m_phase == Phase::Choosing)
        start(m_model->checkedNames());
}

void OfflineComponentsDialog::stop() {
    button(m_stop)->setEnabled(false);
    OfflineDependency::instance()->cancel(m_transfer);
}

void OfflineComponentsDialog::onTicked(const QString& name) {
    OfflineDependency::instance()->getDependencies(
        name, this, [this, name](const BusResult& result) { m_model->setNeeded(name, result.strings()); });
}

void OfflineComponentsDialog::begun() {
    setNote({}, false);
    setPhase(Phase::Running);
    for (const QString& name : m_model->checkedNames())
        m_model->setState(name, OfflineComponentState::started(m_transfer));
    button(m_close)->setFocus();
}

void OfflineComponentsDialog::onAnswer(const BusResult& result) {
    if (result.ok || m_phase != Phase::Running)
        return;
    setPhase(Phase::Choosing);
    m_list->setFocus();
    setNote(result.errorText(), true);
}

void OfflineComponentsDialog::onProgress(const QString& type, const QJsonObject& info) {
    if (m_phase != Phase::Running || type != (m_transfer == Transfer::Export ? "export" : "import"))
        return;
    const auto state = OfflineComponentState::of(m_transfer, info);
    if (state.kind == OfflineComponentState::Idle)
        return;
    m_model->setState(info.value("name").toString(), state);
    endIfDone();
}

void OfflineComponentsDialog::onServiceLost() {
    if (m_phase != Phase::Running)
        return;
    BusResult lost;
    lost.serviceGone = true;
    m_model->failRunning(lost.errorText());
    endIfDone();
}

void OfflineComponentsDialog::endIfDone() {
    if (m_model->isAnyRunning())
        return;
    setPhase(Phase::Done);
    const QStringList reasons = m_model->reasons();
    if (!reasons.isEmpty())
        setNote(reasons.mid(0, MaximumReasons).join('\n'), true);
    else if (m_model->isAnyDone())
        onDone();
}
