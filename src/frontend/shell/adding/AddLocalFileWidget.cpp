#include "shell/adding/AddLocalFileWidget.h"

#include <QFileDialog>
#include <QPushButton>
#include <QStandardPaths>

#include "shell/adding/AddingTexts.h"
#include "widgets/FileChoice.h"

AddLocalFileWidget::AddLocalFileWidget(QWidget* parent)
    : AddPathTab("localfile.svg", AddingTexts::localChoose(), AddingTexts::localFormats(), parent) {
    setObjectName("add_local_file");
    chooseButton()->setAccessibleName("add_local_file_btn");
    chooseButton()->setAccessibleDescription(chooseButton()->text());
}

void AddLocalFileWidget::choose() {
    QFileDialog* dialog = FileChoice::make(FileChoice::Kind::Program, window(), AddingTexts::localChoose(),
                                           QStandardPaths::writableLocation(QStandardPaths::DownloadLocation),
                                           AddingTexts::localFilter());
    dialog->setObjectName("add_local_file_dialog");
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) { Q_EMIT added({path}); });
    dialog->open();
}
