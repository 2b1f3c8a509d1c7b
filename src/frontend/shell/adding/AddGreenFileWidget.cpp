#include "shell/adding/AddGreenFileWidget.h"

#include <QDebug>
#include <QFileDialog>
#include <QPushButton>
#include <QStandardPaths>

#include "shell/adding/AddingTexts.h"
#include "widgets/FileChoice.h"

AddGreenFileWidget::AddGreenFileWidget(QWidget* parent)
    : AddPathTab("greenfile.svg", AddingTexts::portableChoose(), AddingTexts::portableHint(), parent) {
    setObjectName("add_green_file");
    chooseButton()->setAccessibleName("add_green_file_btn");
    chooseButton()->setAccessibleDescription(chooseButton()->text());
}

void AddGreenFileWidget::choose() {
    QFileDialog* dialog =
        FileChoice::make(FileChoice::Kind::Program, window(), AddingTexts::portableChoose(),
                         QStandardPaths::writableLocation(QStandardPaths::DownloadLocation), {});
    dialog->setObjectName("add_green_file_dialog");
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) { Q_EMIT added({path}); });
    dialog->open();
}

void AddGreenFileWidget::execBtnRun() {
    qInfo() << "execBtnRun";
    if (request().kind == AddRequest::Kind::Portable)
        Q_EMIT chosen(request());
}
