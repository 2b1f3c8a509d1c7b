#include "store/install/FileSelectWidget.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QPushButton>
#include <QStandardPaths>
#include <QUrl>
#include <QVBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "widgets/FileChoice.h"

using namespace Fenk;

FileSelectWidget::FileSelectWidget(QWidget* parent)
    : DropArea(parent),
      m_name(new Label(Label::Strong)),
      m_hint(new Label(Label::Small)),
      m_choose(new QPushButton) {
    setObjectName("selectFilesWidget");
    connect(this, &DropArea::dropped, this, &FileSelectWidget::onDropped);
    m_name->setObjectName("setup_file_name");
    m_name->setAlignment(Qt::AlignCenter);
    m_name->setElided(true);
    m_hint->setObjectName("setup_file_hint");
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    m_choose->setAccessibleName("choose_setup_btn");
    m_choose->setAutoDefault(false);
    connect(m_choose, &QPushButton::clicked, this, &FileSelectWidget::choose);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Tokens::Space16, Tokens::Space12, Tokens::Space16, Tokens::Space12);
    layout->setSpacing(Tokens::Space4);
    layout->addStretch();
    layout->addWidget(m_name);
    layout->addWidget(m_hint);
    layout->addSpacing(Tokens::Space4);
    layout->addWidget(m_choose, 0, Qt::AlignHCenter);
    layout->addStretch();
    showFile();
}

void FileSelectWidget::setFile(const QString& path) {
    m_file = path;
    setHint({});
    showFile();
    Q_EMIT fileChanged(path);
}

bool FileSelectWidget::hasGoodFile() const {
    return !m_file.isEmpty() && QFileInfo(m_file).isFile();
}

void FileSelectWidget::setHint(const QString& text, Theme::Role role) {
    m_hint->setTextRole(role);
    m_hint->setText(text);
    m_hint->setVisible(!text.isEmpty());
}

void FileSelectWidget::showFile() {
    const QString name = QFileInfo(m_file).fileName();
    m_name->setText(name.isEmpty() ? tr("Drop the setup program here") : name);
    m_name->setToolTip(m_file.isEmpty() ? QString() : plainToolTip(m_file));
    m_choose->setText(name.isEmpty() ? tr("Choose File...") : tr("Choose Another File..."));
    m_choose->setAccessibleDescription(m_choose->text());
    m_hint->setVisible(!m_hint->text().isEmpty());
}

void FileSelectWidget::choose() {
    QFileDialog* dialog =
        FileChoice::make(FileChoice::Kind::Installer, this, tr("Please select the installation program"),
                         QStandardPaths::writableLocation(QStandardPaths::DownloadLocation),
                         tr("Windows Application Programs (*.exe *.msi)"));
    dialog->setObjectName("setup_file_dialog");
    connect(dialog, &QFileDialog::fileSelected, this, &FileSelectWidget::setFile);
    dialog->open();
}

QString FileSelectWidget::setupIn(const QList<QUrl>& urls) {
    for (const QUrl& url : urls) {
        const QFileInfo file(url.toLocalFile());
        const QString suffix = file.suffix().toLower();
        if (url.isLocalFile() && file.isFile() && (suffix == "exe" || suffix == "msi"))
            return file.absoluteFilePath();
    }
    return {};
}

void FileSelectWidget::onDropped(const QList<QUrl>& urls) {
    const QString path = setupIn(urls);
    if (path.isEmpty())
        setHint(tr("This is no setup program of Windows (.exe or .msi)"), Theme::Warning);
    else
        setFile(path);
}
