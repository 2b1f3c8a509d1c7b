#include "widgets/FileChoice.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include "core/base/SettingsStore.h"
#include "fenk/window/DialogAnchor.h"

namespace {

QString keyOf(FileChoice::Kind kind) {
    switch (kind) {
        case FileChoice::Kind::Registry:
            return QStringLiteral("basic.last_folder.registry");
        case FileChoice::Kind::Installer:
            return QStringLiteral("basic.last_folder.installer");
        case FileChoice::Kind::Log:
            return QStringLiteral("basic.last_folder.log");
        case FileChoice::Kind::Icon:
            return QStringLiteral("basic.last_folder.icon");
        case FileChoice::Kind::Components:
            return QStringLiteral("basic.last_folder.components");
        case FileChoice::Kind::Backup:
            return QStringLiteral("basic.last_folder.backup");
        case FileChoice::Kind::Picture:
            return QStringLiteral("basic.last_folder.picture");
        case FileChoice::Kind::Report:
            return QStringLiteral("basic.last_folder.report");
        default:
            return QStringLiteral("basic.last_folder.program");
    }
}

}  // namespace

QFileDialog* FileChoice::make(Kind kind, QWidget* over, const QString& title, const QString& firstFolder,
                              const QString& filter) {
    const QString key = keyOf(kind);
    const QString last = settingsStore()->getOption(key).toString();
    const bool lastExists = !last.isEmpty() && QFileInfo(last).isDir();
    // A folder that does not exist would stand there as the name of a file.
    const QString first = QFileInfo(firstFolder).isDir() ? firstFolder : QDir::homePath();
    auto* dialog = new QFileDialog(over, title, lastExists ? last : first, filter);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    new Fenk::DialogAnchor(dialog);
    const auto remember = [key](const QString& chosen) {
        const QFileInfo file(chosen);
        settingsStore()->setOption(key, file.isDir() ? file.absoluteFilePath() : file.absolutePath());
    };
    QObject::connect(dialog, &QFileDialog::fileSelected, dialog, remember);
    QObject::connect(dialog, &QFileDialog::filesSelected, dialog,
                     [remember](const QStringList& files) { remember(files.value(0)); });
    return dialog;
}
