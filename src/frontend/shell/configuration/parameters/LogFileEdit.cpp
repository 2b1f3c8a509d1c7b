#include "shell/configuration/parameters/LogFileEdit.h"

#include <QBoxLayout>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>

#include "backend/InBackground.h"
#include "fenk/controls/IconButton.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/style/Tokens.h"
#include "fenk/window/DialogAnchor.h"

using namespace Fenk;

namespace {

const char Suffix[] = "log";

}  // namespace

LogFileEdit::LogFileEdit(QWidget* parent) : QWidget(parent), m_edit(new LineEdit) {
    m_edit->setPlaceholderText(tr("Please select the path to save log files"));
    m_edit->setAccessibleName(tr("Log files"));
    m_edit->lineEdit()->setClearButtonEnabled(true);
    auto* button = new IconButton("fenk-folder", tr("Choose a file"));
    button->setObjectName("params_log_file_button");
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space8);
    layout->addWidget(m_edit, 1, Qt::AlignTop);
    layout->addWidget(button, 0, Qt::AlignTop);
    setFocusProxy(m_edit);
    connect(m_edit, &LineEdit::textChanged, this, &LogFileEdit::textChanged);
    connect(m_edit, &LineEdit::editingFinished, this, &LogFileEdit::check);
    connect(button, &QAbstractButton::clicked, this, &LogFileEdit::buttonClicked);
}

void LogFileEdit::setPath(const QString& path) {
    m_edit->setText(path);
    m_edit->hideAlertMessage();
}

QString LogFileEdit::path() const {
    return m_edit->text();
}

void LogFileEdit::choose() {
    const auto existingDirectory = [path = path()] {
        const QString directory = QFileInfo(path).absolutePath();
        return !path.isEmpty() && QFileInfo(directory).isDir() ? directory : QString();
    };
    inBackground(this, existingDirectory, [this](const QString& directory) {
        if (!findChild<QFileDialog*>())
            openDialog(directory.isEmpty() ? m_defaultDirectory : directory);
    });
}

void LogFileEdit::openDialog(const QString& directory) {
    auto* dialog = new QFileDialog(this, tr("Log files"), directory, tr("Log files (*.log)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(Suffix);
    dialog->selectFile(tr("Unnamed") + ".log");
    new DialogAnchor(dialog);
    connect(dialog, &QFileDialog::fileSelected, this, &LogFileEdit::setPath);
    dialog->open();
}

/// Says when a typed path leads nowhere. The disk may be slow.
void LogFileEdit::check() {
    const QString path = this->path();
    if (path.isEmpty())
        return;
    inBackground(
        this,
        [path] { return QDir::isAbsolutePath(path) && QFileInfo(QFileInfo(path).absolutePath()).isDir(); },
        [this, path](bool exists) {
            if (!exists && this->path() == path)
                m_edit->showAlertMessage(tr("There is no such folder"), 0);
        });
}
