#include "packaging/manifest/ExportYamlDialog.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QDebug>
#include <QShowEvent>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "backend/InBackground.h"
#include "backend/ProgramRecord.h"
#include "backend/ProgramRef.h"
#include "feedback/client/AliyunGreenApi.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "packaging/manifest/CategoryChoice.h"
#include "packaging/manifest/ManifestExporter.h"
#include "packaging/manifest/ManifestFormRows.h"
#include "packaging/manifest/RememberedAnswers.h"

using namespace Fenk;
using Step = ManifestExporter::Step;

namespace {
constexpr int WrittenMs = 8000;  // long enough to read a path
}

ExportYamlDialog::ExportYamlDialog(const QString& bottleName, const QString& programUuid, QWidget* parent)
    : ExportYamlDialog(bottleName, programUuid, new AliyunGreenApi, parent) {}

ExportYamlDialog::ExportYamlDialog(const QString& bottleName, const QString& programUuid,
                                   AliyunGreenApi* moderation, QWidget* parent)
    : Dialog(tr("Export Configuration"), QString(), parent),
      m_bottle(bottleName),
      m_programUuid(programUuid),
      m_rows(new ManifestFormRows),
      m_exporter(new ManifestExporter(moderation, this)),
      m_status(new Label(Label::Small)) {
    setObjectName("export_yaml_dialog");
    setFixedWidth(Tokens::DialogMaxWidth);
    m_status->setObjectName("export_status");
    m_status->setElided(true);
    m_status->setFixedHeight(m_status->sizeHint().height());  // nothing moves when a text comes or goes
    addContent(m_rows);
    addContent(m_status);
    addButton(tr("Cancel"));
    m_ok = addButton(tr("OK"), true, ButtonRecommend);
    setOnButtonClickedClose(false);
    connect(this, &Dialog::buttonClicked, this, [this](int index) {
        if (index == m_ok)
            startExport();
        else
            reject();
    });
    connect(m_rows, &ManifestFormRows::changed, this, &ExportYamlDialog::updateOk);
    connect(m_rows->categories(), &CategoryChoice::fetchFailed, this,
            [this] { warn(tr("Failed to fetch categories, please check your network connection")); });
    connect(m_exporter, &ManifestExporter::stepChanged, this, &ExportYamlDialog::onStep);
    connect(m_exporter, &ManifestExporter::refused, this,
            [this] { warn(tr("The input contains sensitive information, please check it")); });
    connect(m_exporter, &ManifestExporter::failed, this, [this](const QString& errorText) {
        showStatus(errorText, true);
        warn(tr("Failed to dump manifest"));
    });
    connect(m_exporter, &ManifestExporter::exported, this, [this](const QString& path) {
        // The file manager may have to be started first.
        callServiceAsync(
            qApp, [path] { DesktopUtils::showInFileManager(path); }, [] {});
        if (parentWidget())  // there may be no file manager
            FloatingMessage::show(parentWidget(), Theme::icon("fenk-success"),
                                  tr("The manifest is in %1").arg(path), WrittenMs);
        accept();
    });
    updateOk();
    m_rows->setFocus();
    BottlesConfig::instance()->watchBottle(m_bottle, this,
                                           [this](const BusResult& result) { onRecord(result); });
}

void ExportYamlDialog::openFor(const ProgramRef& program, QWidget* over) {
    auto* dialog = new ExportYamlDialog(program.bottle, program.uuid, over);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void ExportYamlDialog::showEvent(QShowEvent* event) {
    Dialog::showEvent(event);
    if (!event->spontaneous())
        m_rows->categories()->fetch();
}

void ExportYamlDialog::onRecord(const BusResult& result) {
    if (!result.ok)
        qWarning().noquote() << "no remembered answers of" << m_bottle << result.errorMessage;
    const QJsonObject bottle = result.object();
    const QJsonObject program = BottleRecord::programs(bottle).value(m_programUuid).toObject();
    m_bottlePath = BottleRecord::path(bottle);
    m_rows->setLogo(ProgramRecord::icon(program));
    inBackground(
        this, [path = m_bottlePath] { return RememberedAnswers::read(path).value_or(ManifestForm()); },
        [this, name = ProgramRecord::name(program).simplified()](const ManifestForm& known) {
            propose(known, name);
        },
        RememberedAnswers::thread());
}

void ExportYamlDialog::propose(ManifestForm known, const QString& name) {
    if (known.programUuid != m_programUuid) {
        ManifestForm contributor;
        contributor.contributor = known.contributor;
        contributor.contributorEmail = known.contributorEmail;
        known = contributor;
    }
    known.name = name;
    m_rows->propose(known);
}

ManifestForm ExportYamlDialog::form() const {
    ManifestForm form = m_rows->values();
    form.bottle = m_bottle;
    form.programUuid = m_programUuid;
    return form;
}

void ExportYamlDialog::startExport() {
    const ManifestForm answers = form();
    if (m_bottlePath.isEmpty())  // the service could not tell it when the dialog was opened
        BottlesConfig::instance()->watchBottle(m_bottle, qApp, [answers](const BusResult& result) {
            RememberedAnswers::queue(BottleRecord::path(result.object()), answers);
        });
    else
        RememberedAnswers::queue(m_bottlePath, answers);
    m_exporter->start(answers);
}

void ExportYamlDialog::onStep() {
    const Step step = m_exporter->step();
    m_rows->setEnabled(step == Step::Idle);
    updateOk();
    if (step == Step::Checking)
        showStatus(tr("Checking the texts…"));
    else if (step == Step::Writing)
        showStatus(tr("Writing the manifest…"));
    // A disabled button loses the focus; on "Cancel" a second Return would end the export.
    if (step == Step::Idle)
        button(m_ok)->setFocus();
    else
        setFocus();
}

void ExportYamlDialog::updateOk() {
    const Problem problem = ManifestFormRules::problemOf(form());
    const bool isIdle = m_exporter->step() == Step::Idle;
    button(m_ok)->setEnabled(problem == Problem::None && isIdle);
    if (isIdle)
        showStatus(textOf(problem));
}

QString ExportYamlDialog::textOf(Problem problem) {
    switch (problem) {
        case Problem::Missing:
            return tr("Please fill in all fields");
        case Problem::WebAddress:
            return tr("The download URL must be a whole address that begins with http:// or https://");
        case Problem::Megabytes:
            return tr("The package size must be a number");
        case Problem::Email:
            return tr("The email address is not complete");
        case Problem::None:
            break;
    }
    return {};
}

void ExportYamlDialog::showStatus(const QString& text, bool isError) {
    const bool isNew = text != m_status->text();
    m_status->setText(text);
    m_status->setTextRole(isError ? Theme::Danger : Theme::Secondary);
    if (text.isEmpty() || !isNew)
        return;
    QAccessibleEvent event(m_status, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void ExportYamlDialog::warn(const QString& text) {
    const QIcon icon = Theme::icon("dialog-warning");
    FloatingMessage::show(this, icon.isNull() ? Theme::icon("fenk-warning") : icon, text);
}
