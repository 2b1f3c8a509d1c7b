#include "shell/configuration/offline/OfflineComponentsDialog.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <utility>

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
constexpr int AskAgainMs = 1000;
constexpr int MaximumReasons = 2;  // the others are in the tool tips of their rows

/// Refused since another window, or another bottle's, has begun the same.
bool isRunningAlready(const BusResult& refusal) {
    const QString code = refusal.reasons.at(0).toObject().value("code").toString();
    return code == "import-running" || code == "export-running";
}

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
    connect(m_model, &OfflineComponentsModel::checkedCountChanged, this,
            &OfflineComponentsDialog::updateMainButton);
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

void OfflineComponentsDialog::setTitleButton(QPushButton* button) {
    m_titleButton = button;
    m_titleRow->addWidget(button);
    button->setVisible(m_phase == Phase::Choosing);
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
    updateMainButton();
    if (m_titleButton)
        m_titleButton->setVisible(phase == Phase::Choosing);
    // Closing does not stop what the service does.
    button(m_close)->setText(phase == Phase::Running ? tr("Close") : tr("Cancel"));
    button(m_close)->setAccessibleName(button(m_close)->text());
    button(m_close)->setVisible(!isDone);
    if (isDone)
        button(m_main)->setFocus();
}

/// Not before it is known what the ticked components need.
void OfflineComponentsDialog::updateMainButton() {
    const bool isChosen =
        m_phase == Phase::Choosing && m_questions == 0 && !m_model->checkedNames().isEmpty();
    button(m_main)->setEnabled(m_phase == Phase::Done || isChosen);
}

void OfflineComponentsDialog::attach() {
    showWaiting();
    const auto onAnswered = [this](const BusResult& result) {
        if (!result.ok)
            showFailure(result, [this] { attach(); });
        else if (result.text != "true")
            offer();
        else
            askStates([this](const BusResult& states) { reattach(states.object()); });
    };
    if (m_transfer == Transfer::Export)
        OfflineDependency::instance()->isExporting(this, onAnswered);
    else
        OfflineDependency::instance()->isImporting(this, onAnswered);
}

void OfflineComponentsDialog::askStates(const ServiceCalls::Handler& handler) {
    if (m_transfer == Transfer::Export)
        OfflineDependency::instance()->exportingStatus(this, handler);
    else
        OfflineDependency::instance()->importingStatus(this, handler);
}

void OfflineComponentsDialog::reattach(const QJsonObject& states) {
    if (states.isEmpty()) {
        // It is being prepared, and may still be refused.
        QTimer::singleShot(AskAgainMs, this, &OfflineComponentsDialog::attach);
        return;
    }
    showComponents(states.keys(), false);
    setPhase(Phase::Running);
    showStates(states);
}

void OfflineComponentsDialog::showStates(const QJsonObject& states) {
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

void OfflineComponentsDialog::showPage(QWidget* page) {
    delete std::exchange(m_page, page);
    m_pages->addWidget(page);
    m_pages->setCurrentWidget(page);
    m_spinner->stop();
}

void OfflineComponentsDialog::showFailure(const BusResult& result, const std::function<void()>& retry) {
    auto* page = new ListPlaceholder(Theme::icon("fenk-error"), result.errorText(), tr("Retry"));
    // Later, since the page of the button is deleted.
    connect(page, &ListPlaceholder::pressed, this, retry, Qt::QueuedConnection);
    showPage(page);
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
    ++m_questions;
    updateMainButton();
    OfflineDependency::instance()->getDependencies(name, this, [this, name](const BusResult& result) {
        --m_questions;
        m_model->setNeeded(name, result.strings());
        updateMainButton();
    });
}

void OfflineComponentsDialog::waitForStart() {
    setNote({}, false);
    setPhase(Phase::Waiting);
}

void OfflineComponentsDialog::begun(const QStringList& names) {
    m_asked = names;
    m_isUnanswered = true;
    setNote({}, false);
    setPhase(Phase::Running);
    for (const QString& name : names)
        m_model->setState(name, OfflineComponentState::started(m_transfer));
    button(m_close)->setFocus();
}

void OfflineComponentsDialog::reject() {
    m_closesAfterwards = m_isUnanswered;
    if (m_isUnanswered)
        hide();
    else
        Dialog::reject();
}

void OfflineComponentsDialog::closeEvent(QCloseEvent* event) {
    Dialog::closeEvent(event);
    // Or the hidden dialog would be deleted.
    if (m_closesAfterwards)
        event->ignore();
}

void OfflineComponentsDialog::onAnswer(const BusResult& result) {
    m_isUnanswered = false;
    if (std::exchange(m_closesAfterwards, false)) {
        if (result.ok) {
            Dialog::reject();
            return;
        }
        open();
    }
    if (m_phase != Phase::Running)
        return;
    if (result.ok) {
        askStates([this](const BusResult& states) { failUnknown(states.object()); });
    } else if (isRunningAlready(result)) {
        attach();
    } else {
        setPhase(Phase::Choosing);
        m_list->setFocus();
        setNote(result.errorText(), true);
    }
}

/// What a file had when it was checked may have gone from it before the work began.
void OfflineComponentsDialog::failUnknown(const QJsonObject& states) {
    if (m_phase != Phase::Running || states.isEmpty())
        return;
    for (const QString& name : qAsConst(m_asked)) {
        if (!states.contains(name))
            m_model->setState(name, OfflineComponentState::failed(tr("%1 is not there any more.").arg(name)));
    }
    showStates(states);
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
