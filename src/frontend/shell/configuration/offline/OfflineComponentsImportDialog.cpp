#include "shell/configuration/offline/OfflineComponentsImportDialog.h"

#include <QDir>
#include <QFileDialog>
#include <QJsonArray>
#include <QPushButton>

#include "backend/ServiceErrorText.h"
#include "fenk/style/Theme.h"
#include "fenk/style/WidgetLook.h"
#include "launch/banner/RunningProgramsQuestion.h"
#include "launch/run/BottleTasks.h"
#include "programs/ListPlaceholder.h"
#include "shell/configuration/offline/MissingComponentsDialog.h"
#include "widgets/FileChoice.h"

namespace {

QStringList textsOf(const QJsonArray& values) {
    QStringList texts;
    for (const QJsonValue& value : values)
        texts += value.toString();
    return texts;
}

/// Why files can't be used, a sentence each.
QString faultsOf(const QJsonObject& answer) {
    QStringList sentences;
    for (const QJsonValue& fault : answer.value("faults").toArray())
        sentences += ServiceErrorText::of(fault.toObject());
    sentences.removeDuplicates();
    return sentences.join('\n');
}

/// The names of the programs for which the service has refused, as its reason has them.
QStringList programsIn(const BusResult& refusal) {
    const QJsonArray arguments = refusal.reasons.at(0).toObject().value("arguments").toArray();
    return arguments.at(0).toString().split(", ", Qt::SkipEmptyParts);
}

}  // namespace

OfflineComponentsImportDialog::OfflineComponentsImportDialog(const QString& bottle, QWidget* parent)
    : OfflineComponentsDialog(Transfer::Import, {tr("Import Components"), tr("Import"), tr("OK")}, bottle,
                              parent),
      m_more(new QPushButton(tr("Select Manually"))) {
    setObjectName("offline_import_dialog");
    m_more->setObjectName("offline_import_more");
    m_more->setAccessibleName(m_more->text());
    m_more->setAutoDefault(false);
    connect(m_more, &QPushButton::clicked, this, &OfflineComponentsImportDialog::chooseFiles);
    addToTableTitle(m_more);
    m_more->hide();
    attach();
}

void OfflineComponentsImportDialog::openFor(const QString& bottle, QWidget* over) {
    auto* dialog = new OfflineComponentsImportDialog(bottle, over);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void OfflineComponentsImportDialog::offer() {
    m_files.clear();
    showTip({});
}

void OfflineComponentsImportDialog::showTip(const QString& detail) {
    auto* tip = new ListPlaceholder(Fenk::Theme::icon("fenk-folder"),
                                    tr("Please select components to import manually"), tr("Select Manually"));
    tip->button()->setObjectName("offline_import_choose");
    tip->setDetail(detail);
    connect(tip, &ListPlaceholder::pressed, this, &OfflineComponentsImportDialog::chooseFiles);
    setButtonKind(tip->button(), Fenk::ButtonKind::Suggested);
    showPage(tip, Leads::ToChoice);
    tip->button()->setFocus();
}

void OfflineComponentsImportDialog::chooseFiles() {
    QFileDialog* choice =
        FileChoice::make(FileChoice::Kind::Components, this, tr("Select Components exported"),
                         QDir::homePath(), tr("Exported Components (*.tar)"));
    choice->setObjectName("offline_import_files");
    choice->setFileMode(QFileDialog::ExistingFiles);
    connect(choice, &QFileDialog::filesSelected, this, &OfflineComponentsImportDialog::onFilesChosen);
    choice->open();
}

void OfflineComponentsImportDialog::onFilesChosen(const QStringList& files) {
    m_files += files;
    m_files.removeDuplicates();
    showWaiting();
    OfflineDependency::instance()->checkDeps(m_files, this,
                                             [this](const BusResult& result) { onChecked(result); });
}

void OfflineComponentsImportDialog::onChecked(const BusResult& result) {
    const QJsonObject answer = result.object();
    const QJsonObject missing = answer.value("missing").toObject();
    const QString faults = result.ok ? faultsOf(answer) : result.errorText();
    m_valid = textsOf(answer.value("valid").toArray());
    m_more->setVisible(!m_valid.isEmpty());
    if (m_valid.isEmpty()) {
        m_files.clear();
        showTip(faults);
    } else {
        showComponents(m_valid, true);
        setNote(faults, true);
    }
    if (missing.isEmpty())
        return;
    auto* warning = new MissingComponentsDialog(missing, this);
    warning->setAttribute(Qt::WA_DeleteOnClose);
    warning->open();
}

void OfflineComponentsImportDialog::start(const QStringList& names) {
    auto* service = OfflineDependency::instance();
    const auto answered = [this, names](const BusResult& result) { onStarted(names, result); };
    m_more->hide();
    begun();
    if (names.size() == m_valid.size())
        service->importDeps(bottle(), m_files, this, answered);
    else
        service->importChosenDeps(bottle(), m_files, names, this, answered);
}

void OfflineComponentsImportDialog::onStarted(const QStringList& names, const BusResult& result) {
    m_more->setVisible(!result.ok);
    onAnswer(result);
    if (result.isBusy())
        askAboutPrograms(programsIn(result), names);
}

void OfflineComponentsImportDialog::askAboutPrograms(const QStringList& programs, const QStringList& names) {
    auto* question = new RunningProgramsQuestion(bottle(), programs, this);
    question->setMessage(
        tr("Components can only be installed while nothing runs in the container. These programs have to be "
           "closed first: what has not been saved in them will be lost."));
    connect(question, &RunningProgramsQuestion::answered, this, [this, names](bool close) {
        if (close)
            BottleTasks::killWineServer(bottle(), this, [this, names] { start(names); });
    });
    question->open();
}
