#include "shell/configuration/offline/OfflineComponentsExportDialog.h"

#include <QDir>
#include <QFileDialog>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "fenk/style/Theme.h"
#include "programs/ListPlaceholder.h"
#include "shell/configuration/offline/FileTime.h"
#include "widgets/FileChoice.h"

OfflineComponentsExportDialog::OfflineComponentsExportDialog(const QString& bottle, QWidget* parent)
    : OfflineComponentsDialog(Transfer::Export, {tr("Export Components"), tr("Export"), tr("Ok")}, bottle,
                              parent) {
    setObjectName("offline_export_dialog");
    attach();
}

void OfflineComponentsExportDialog::openFor(const QString& bottle, QWidget* over) {
    auto* dialog = new OfflineComponentsExportDialog(bottle, over);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void OfflineComponentsExportDialog::offer() {
    BottlesConfig::instance()->watchBottle(bottle(), this, [this](const BusResult& result) {
        const QStringList names = BottleRecord::installedDependencies(result.object());
        if (!result.ok)
            showFailure(result, [this] { attach(); });
        else if (names.isEmpty())
            showPage(
                new ListPlaceholder(Fenk::Theme::icon("fenk-info"), tr("No installed components to export")));
        else
            showComponents(names, false);
    });
}

void OfflineComponentsExportDialog::start(const QStringList& names) {
    QFileDialog* choice = FileChoice::make(FileChoice::Kind::Components, this, tr("Select Save Directory"),
                                           QDir::homePath(), QString());
    choice->setObjectName("offline_export_directory");
    choice->setFileMode(QFileDialog::Directory);
    choice->setOption(QFileDialog::ShowDirsOnly);
    connect(choice, &QFileDialog::fileSelected, this,
            [this, names](const QString& directory) { exportTo(directory, names); });
    choice->open();
}

void OfflineComponentsExportDialog::exportTo(const QString& directory, const QStringList& names) {
    m_target =
        QDir(directory).absoluteFilePath(QString("Exported_Components_%1").arg(nowInFileName()) + ".tar");
    begun(names);
    OfflineDependency::instance()->exportDeps(names, m_target, this,
                                              [this](const BusResult& result) { onAnswer(result); });
}

void OfflineComponentsExportDialog::onDone() {
    if (!m_target.isEmpty())
        setNote(tr("The components are in %1.").arg(QDir::toNativeSeparators(m_target)), false);
}
