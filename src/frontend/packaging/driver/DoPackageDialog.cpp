#include "packaging/driver/DoPackageDialog.h"

#include <QDebug>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QStackedWidget>
#include <QUrl>
#include <QVBoxLayout>

#include "backend/InBackground.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/window/Dialog.h"
#include "packaging/driver/PackageCompression.h"
#include "packaging/driver/PackagePages.h"
#include "packaging/driver/SaveDirectory.h"

DoPackageDialog::DoPackageDialog(QWidget* parent)
    : AbstractDialog(parent),
      m_pages(new QStackedWidget),
      m_progress(new ShowPackagingProgressWidget),
      m_done(new ShowPackageDoneWidget),
      m_failed(new ShowPackageFailedWidget),
      m_log(new ShowPackagingLogWidget) {
    setObjectName("packaging_dialog");
    setAccessibleName("packaging_dialog");
    setFixedWidth(Fenk::Tokens::DialogMaxWidth);
    m_pages->setObjectName("packaging_stacked_widget");
    m_pages->setAccessibleName("packaging_dialog");
    for (QWidget* page : std::initializer_list<QWidget*>{m_progress, m_done, m_failed})
        m_pages->addWidget(page);
    bodyLayout()->addWidget(m_pages);
    bodyLayout()->addWidget(m_log);
    m_log->hide();

    connect(&m_run, &PackagingRun::progress, this, &DoPackageDialog::updateProgress);
    connect(this, &DoPackageDialog::updateProgress, m_progress, &ShowPackagingProgressWidget::setProgress);
    connect(&m_run, &PackagingRun::line, this, &DoPackageDialog::slotsPackageOutput);
    connect(&m_run, &PackagingRun::finished, this, &DoPackageDialog::onFinished);
    connect(m_progress, &ShowPackagingProgressWidget::detailsToggled, this,
            [this](bool shown) { shown ? slotsShowLogs() : slotsHideLogs(); });
    connect(m_done, &ShowPackageDoneWidget::changePathClicked, this, &DoPackageDialog::changeSavedPath);
    connect(m_done, &ShowPackageDoneWidget::viewClicked, this, &DoPackageDialog::openPackage);
    connect(m_done->info(), &AppPkgInfoWidget::pkgDirClicked, this,
            [this] { QDesktopServices::openUrl(QUrl::fromLocalFile(m_saveDirectory)); });
    connect(m_failed, &ShowPackageFailedWidget::logClicked, this,
            [this] { QDesktopServices::openUrl(QUrl::fromLocalFile(m_run.logPath())); });
}

void DoPackageDialog::start(const QString& bottleName, const QString& packageName,
                            const QString& packageVersion, const QString& logDir) {
    m_packageName = packageName;
    m_packageVersion = packageVersion;
    setTitle(tr("Packaging application in progress ..."));
    m_progress->reset();
    m_pages->setCurrentWidget(m_progress);
    m_preparation = std::make_unique<QObject>();
    SaveDirectory::find(m_preparation.get(), [this, bottleName, logDir](const QString& directory) {
        m_preparation.release()->deleteLater();  // it is the caller
        m_saveDirectory = directory;
        m_run.start(bottleName, directory, PackageCompression::current(), logDir);
    });
}

void DoPackageDialog::slotsPackageOutput(const QString& line, bool isError) {
    m_log->append(line, isError);
}

void DoPackageDialog::slotsShowLogs() {
    m_progress->setDetailsShown(true);
    m_log->show();
    adjustHeight();
}

void DoPackageDialog::slotsHideLogs() {
    m_progress->setDetailsShown(false);
    m_log->hide();
    adjustHeight();
}

void DoPackageDialog::adjustHeight() {
    resize(width(), layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width())
                                                  : layout()->totalSizeHint().height());
}

void DoPackageDialog::onFinished(PackagingRun::End end) {
    if (m_question)  // there is nothing to lose any more
        m_question->reject();
    slotsHideLogs();
    setTitle({});
    if (end == PackagingRun::End::Cancelled) {
        done(Rejected);
        return;
    }
    if (end == PackagingRun::End::Packed) {
        m_done->info()->setPackage(m_packageName, m_packageVersion, m_saveDirectory);
        m_pages->setCurrentWidget(m_done);
    } else {
        m_failed->setReason(m_run.failureText());
        m_pages->setCurrentWidget(m_failed);
    }
    adjustHeight();
}

void DoPackageDialog::changeSavedPath() {
    // The title is the product's in every language.
    auto* chooser = new QFileDialog(this, "选择保存位置", m_saveDirectory);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::Directory);
    chooser->setOption(QFileDialog::ShowDirsOnly);
    connect(chooser, &QFileDialog::fileSelected, this, &DoPackageDialog::setSavedPath);
    chooser->open();
}

void DoPackageDialog::setSavedPath(const QString& directory) {
    SaveDirectory::change(directory, this, [this, directory](bool isUsable) {
        if (!isUsable) {
            Fenk::FloatingMessage::show(this, Fenk::Theme::icon("dialog-warning"),
                                        tr("Nothing can be saved in %1.").arg(directory));
            return;
        }
        auto* note = new Fenk::Dialog({}, tr("Next will be saved to: ") + directory, this);
        note->setAttribute(Qt::WA_DeleteOnClose);
        note->addButton(tr("OK"), true, Fenk::Dialog::ButtonRecommend);
        note->open();
    });
}

void DoPackageDialog::openPackage() {
    inBackground(
        this,
        [directory = m_saveDirectory, name = m_packageName] {
            return SaveDirectory::newestPackage(directory, name);
        },
        [this](const QString& package) {
            const QUrl url = QUrl::fromLocalFile(package.isEmpty() ? m_saveDirectory : package);
            qInfo().nospace().noquote() << "open: " << url.toString();
            QDesktopServices::openUrl(url);
        });
}

void DoPackageDialog::reject() {
    m_preparation.reset();
    if (m_run.isRunning())
        askWhetherToClose();
    else
        AbstractDialog::reject();
}

void DoPackageDialog::askWhetherToClose() {
    if (m_question)
        return;
    m_question = new Fenk::Dialog(
        tr("The application is not yet packed, are you sure you want to close?"),
        tr("The current file will not be saved and will need to be repacked after closing"), this);
    m_question->setAttribute(Qt::WA_DeleteOnClose);
    m_question->addButton(tr("Cancel"));
    const int close = m_question->addButton(tr("OK"), false, Fenk::Dialog::ButtonWarning);
    connect(m_question, &QDialog::finished, this, [this, close](int answer) {
        if (answer == close && m_run.isRunning()) {
            qInfo() << "close? ";
            m_run.cancel();
        }
    });
    m_question->open();
}
