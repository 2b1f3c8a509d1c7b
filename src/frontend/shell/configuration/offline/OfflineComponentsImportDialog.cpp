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

/// Why files can't be used, a sentence each.
QString faultsOf(const QJsonObject& answer) {
    QStringList sentences;
    for (const QJsonValue& fault : answer.value("faults").toArray())
        sentences += ServiceErrorText::of(fault.toObject());
    sentences.removeDuplicates();
    return sentences.join('\n');
}

/// The names of the programs for which the service has refused; its reason has them behind a text of all.
QStringList programsIn(const BusResult& refusal) {
    return BusResult::stringsOf(refusal.reasons.at(0).toObject().value("arguments").toArray()).mid(1);
}

}  // namespace

OfflineComponentsImportDialog::OfflineComponentsImportDialog(const QString& bottle, QWidget* parent)
    : OfflineComponentsDialog(Transfer::Import, {tr("Import Components"), tr("Import"), tr("OK")}, bottle,
                              parent) {
    setObjectName("offline_import_dialog");
    auto* more = new QPushButton(tr("Select Manually"));
    more->setObjectName("offline_import_more");
    more->setAccessibleName(more->text());
    more->setAutoDefault(false);
    connect(more, &QPushButton::clicked, this, &OfflineComponentsImportDialog::chooseFiles);
    setTitleButton(more);
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
    showPage(tip);
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
    check();
}

void OfflineComponentsImportDialog::check() {
    showWaiting();
    OfflineDependency::instance()->checkDeps(m_files, this,
                                             [this](const BusResult& result) { onChecked(result); });
}

void OfflineComponentsImportDialog::onChecked(const BusResult& result) {
    if (result.errorName == QLatin1String("com.lumora.Error.InvalidArgs")) {
        m_files.clear();
        showTip(result.errorText());
    } else if (!result.ok) {
        showFailure(result, [this] { check(); });
    } else {
        showAnswer(result.object());
    }
}

void OfflineComponentsImportDialog::showAnswer(const QJsonObject& answer) {
    m_valid = BusResult::stringsOf(answer.value("valid").toArray());
    const QJsonObject missing = answer.value("missing").toObject();
    m_isPartial = !missing.isEmpty();
    for (const QJsonValue& fault : answer.value("faults").toArray())
        m_files.removeAll(fault.toObject().value("file").toString());
    if (m_valid.isEmpty()) {
        showTip(faultsOf(answer));
    } else {
        showComponents(m_valid, true);
        setNote(faultsOf(answer), true);
    }
    if (!m_isPartial)
        return;
    auto* warning = new MissingComponentsDialog(missing, this);
    warning->setAttribute(Qt::WA_DeleteOnClose);
    warning->open();
}

void OfflineComponentsImportDialog::start(const QStringList& names) {
    auto* service = OfflineDependency::instance();
    const auto answered = [this, names](const BusResult& result) {
        onAnswer(result);
        if (result.isBusy())
            askAboutPrograms(programsIn(result), names);
    };
    begun(names);
    // Without names the service also installs what was missing and has no row.
    if (names.size() == m_valid.size() && !m_isPartial)
        service->importDeps(bottle(), m_files, this, answered);
    else
        service->importChosenDeps(bottle(), m_files, names, this, answered);
}

void OfflineComponentsImportDialog::askAboutPrograms(const QStringList& programs, const QStringList& names) {
    auto* question = new RunningProgramsQuestion(bottle(), programs, this);
    question->setMessage(
        tr("Components can only be installed while nothing runs in the container. These programs have to be "
           "closed first: what has not been saved in them will be lost."));
    connect(question, &RunningProgramsQuestion::answered, this, [this, names](bool close) {
        if (!close)
            return;
        waitForStart();
        BottleTasks::killWineServer(bottle(), this, [this, names] { start(names); });
    });
    question->open();
}
