#include "store/install/SetupAppInfoDialog.h"

#include <QAbstractButton>
#include <QDebug>
#include <QLayout>
#include <QUrl>

#include "backend/ComponentKind.h"
#include "backend/ComponentManager.h"
#include "backend/InBackground.h"
#include "backend/ServiceErrorText.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/Label.h"
#include "store/install/DependencyWarningWidget.h"
#include "store/install/FileHash.h"
#include "store/install/FileSelectWidget.h"
#include "store/install/ManifestCommandList.h"
#include "store/install/SetupDownload.h"
#include "store/install/SetupDownloadRow.h"
#include "store/install/WineDepsCard.h"
#include "widgets/WidgetImages.h"

using namespace Fenk;

namespace {

constexpr int ButtonWidth = 185;
constexpr int FileHeight = 125;
constexpr int LongestToolTip = 2000;

}  // namespace

SetupAppInfoDialog::SetupAppInfoDialog(const SetupAppInfo& info, const ManifestFacts& manifest,
                                       QWidget* parent)
    : CommonInfoBaseDialog(parent),
      m_info(info),
      m_manifest(manifest),
      m_warning(new DependencyWarningWidget),
      m_card(new WineDepsCard),
      m_replaced(new Label(Label::Small)),
      m_file(new FileSelectWidget),
      m_hash(new FileHash(this)) {
    setObjectName("setup_app_info_dialog");
    setAccessibleName("setup_app_info_dialog");
    setTitle(tr("Please select the installation program"));
    addRows();
    addParts();
    connectParts();
    addPackage(m_info.winePackage);
    showStep();
}

void SetupAppInfoDialog::addRows() {
    addTextRow(tr("App Name: "), m_info.appName);
    addTextRow(tr("App Size: "), m_info.size);
    addTextRow(tr("App Version: "), m_info.version,
               tr("(Using same installer version for better compatibility)"));
    addLinkRow(tr("App Official Site: "), m_info.officialSite);
    addTextRow(tr("Software Contributors: "), m_info.contributor,
               m_info.contributorEmail.isEmpty() ? QString() : QString("(%1)").arg(m_info.contributorEmail));
}

void SetupAppInfoDialog::addParts() {
    m_replaced->setObjectName("replaced_wine");
    m_replaced->setWordWrap(true);
    m_replaced->setTextFormat(Qt::PlainText);
    m_replaced->hide();
    m_file->setMinimumHeight(FileHeight);
    addContent(m_warning);
    addContent(m_card);
    addContent(m_replaced);
    const QUrl url(m_info.downloadUrl.trimmed());
    if (SetupDownload::canFetch(url)) {
        m_download = new SetupDownloadRow(url, m_info.appName, m_manifest.setupBytes);
        addContent(m_download);
        connect(m_download, &SetupDownloadRow::started, this, [this] { m_fileBefore = m_file->file(); });
        connect(m_download, &SetupDownloadRow::downloaded, this, [this](const QString& path) {
            if (m_file->file() == m_fileBefore)  // the user has chosen none meanwhile
                m_file->setFile(path);
        });
    }
    addContent(m_file);
    if (!m_manifest.commands.isEmpty()) {
        auto* commands = new ManifestCommandList(m_manifest.commands);
        addContent(commands);
        connect(commands, &ManifestCommandList::unfolded, this, &SetupAppInfoDialog::fitHeight,
                Qt::QueuedConnection);
    }
    addButton(tr("Cancel"));
    addButton(tr("Install"), true, ButtonRecommend);
    setOnButtonClickedClose(false);
    for (const auto& [index, name] :
         {std::pair(CancelButton, "cancel_btn"), {InstallButton, "install_btn"}}) {
        button(index)->setAccessibleName(name);
        button(index)->setAccessibleDescription(button(index)->text());
        button(index)->setFixedWidth(ButtonWidth);
    }
    if (!m_info.wineDependencies.isEmpty())
        button(InstallButton)
            ->setToolTip(tr("<b>Required packages:</b><br/>%1")
                             .arg(m_info.wineDependencies.left(LongestToolTip).toHtmlEscaped()));
}

void SetupAppInfoDialog::connectParts() {
    connect(this, &QDialog::finished, this, [this](int result) {
        if (result != InstallButton)
            cancelFetches();
    });
    connect(this, &Dialog::buttonClicked, this, &SetupAppInfoDialog::onButton);
    connect(m_file, &FileSelectWidget::fileChanged, this, &SetupAppInfoDialog::onFile);
    connect(m_hash, &FileHash::done, this, &SetupAppInfoDialog::onHash);
    connect(m_hash, &FileHash::progressChanged, this,
            [this](int percent) { m_file->setHint(tr("Checking the file: %1%").arg(percent)); });
    connect(m_card, &WineDepsCard::clicked, this, &SetupAppInfoDialog::getPackage);
    ComponentManager* manager = ComponentManager::instance();
    connect(manager, &ComponentManager::refresh, this, [this] {
        qInfo() << "recheck installed components";
        askPackages(false);
    });
    connect(manager, &ComponentManager::updateProgress, this, &SetupAppInfoDialog::onDownload);
}

QString SetupAppInfoDialog::filePath() const {
    return m_file->hasGoodFile() ? m_file->file() : QString();
}

void SetupAppInfoDialog::addPackage(const QString& package) {
    if (m_wanted.contains(package)) {
        qInfo().noquote() << package << "already exists";
        return;
    }
    m_wanted += package;
    askPackages(false);
}

/// The service may have been away when the lists were asked for.
void SetupAppInfoDialog::askPackages(bool isClick) {
    ComponentManager* manager = ComponentManager::instance();
    if (isClick || manager->knownRunners().isEmpty())
        manager->update(this, [this, isClick] { askMachine(isClick); });
    else
        askMachine(isClick);
}

void SetupAppInfoDialog::askMachine(bool isClick) {
    QStringList unknown = m_wanted;
    for (const QString& runner : qAsConst(ComponentManager::instance()->runnerInstalled))
        unknown.removeAll(runner);
    inBackground(
        this, [unknown] { return SetupPackages::ask(unknown); },
        [this, isClick](const SetupPackages& packages) {
            m_packages = packages;
            m_isAsked = true;
            checkPackages();
            if (isClick && step().isMissing)
                FloatingMessage::show(this, warningIcon(),
                                      tr("Required packages and components have not installed"));
        });
}

void SetupAppInfoDialog::checkPackages() {
    m_packages.runnersInstalled = ComponentManager::instance()->runnerInstalled;
    m_packages.runnersSupported = ComponentManager::instance()->runnerSupported;
    QStringList replaced, missing;
    for (const QString& package : qAsConst(m_wanted)) {
        const SetupPackages::State state = m_packages.of(package);
        if (state == SetupPackages::State::Replaced)
            replaced += package;
        else if (state == SetupPackages::State::Missing)
            missing += m_packages.toInstall(package);
    }
    m_card->showPackages(missing);
    m_replaced->setVisible(!replaced.isEmpty());
    m_replaced->setText(
        tr("%1 is not available for this computer. The Wine of this computer is used instead.")
            .arg(breakable(replaced.join(", "))));
    showStep();
}

SetupAppInfoDialog::Step SetupAppInfoDialog::step() const {
    return {!m_card->packages().isEmpty(), m_file->hasGoodFile()};
}

void SetupAppInfoDialog::showStep() {
    const Step now = step();
    QString text;
    if (now.isMissing) {
        text =
            tr("Required packages and components are missing for install application, please click the "
               "missing packages below to install them from App Store. After install all missing packages, "
               "click the Next button to continue.");
    } else {
        text = tr("You need to provide the setup program of the software in Windows to install it.");
        if (!m_info.downloadUrl.isEmpty())
            text +=
                tr("<br/>You can download the setup program from %1").arg(webLinkHtml(m_info.downloadUrl));
    }
    m_warning->setText(text);
    m_warning->setGood(now.hasFile);
    m_file->setVisible(!now.isMissing);
    if (m_download)
        m_download->setVisible(!now.isMissing);
    button(InstallButton)->setText(now.isMissing ? tr("Next") : tr("Install"));
    button(InstallButton)->setAccessibleDescription(button(InstallButton)->text());
    button(InstallButton)->setEnabled(m_isAsked && now.canGoOn());
    fitHeight();
}

void SetupAppInfoDialog::onButton(int index) {
    if (index == InstallButton && step().isMissing)
        askPackages(true);
    else if (index != InstallButton || m_file->hasGoodFile())
        done(index);
    else
        showStep();  // the file has gone
}

void SetupAppInfoDialog::onFile(const QString& path) {
    m_hash->cancel();
    if (!m_manifest.setupSha256.isEmpty() && m_file->hasGoodFile()) {
        m_file->setHint(tr("Checking the file: %1%").arg(0));
        m_hash->start(path);
    }
    showStep();
}

void SetupAppInfoDialog::onHash(const QByteArray& sha256) {
    if (sha256.isEmpty())
        m_file->setHint(tr("This file cannot be read"), Theme::Danger);
    else if (sha256 == m_manifest.setupSha256)
        m_file->setHint(tr("This is the expected file"), Theme::Success);
    else
        m_file->setHint(tr("This is another version than the expected one"), Theme::Warning);
    fitHeight();
}

/// What the background service could fetch comes from it, everything else from the desktop's store.
void SetupAppInfoDialog::getPackage(const QString& package) {
    ComponentManager* manager = ComponentManager::instance();
    if (!manager->runnerSupported.contains(package)) {
        Q_EMIT slotsOpenAppStorePage(package);
        return;
    }
    m_card->setState(package, tr("Downloading"));
    m_fetched.insert(package);
    manager->install(ComponentKind::runner(), package, this, [this, package](const BusResult& answer) {
        const bool isGood = answer.ok && answer.object().value("ok").toBool();
        const QString reason = answer.ok ? ServiceErrorText::of(answer.object()) : answer.errorText();
        onInstalled(package, isGood ? QString() : reason);
    });
}

void SetupAppInfoDialog::cancelFetches() {
    for (const QString& package : qAsConst(m_fetched))
        ComponentManager::instance()->cancelInstall(ComponentKind::runner(), package);
    m_fetched.clear();
}

void SetupAppInfoDialog::onDownload(const QString& kind, const QString& name, uint received, uint total) {
    if (kind == ComponentKind::runner() && total > 0 && m_card->packages().contains(name))
        m_card->setState(name, tr("Downloading: %1%").arg(int(qMin(1.0, double(received) / total) * 100)));
}

void SetupAppInfoDialog::onInstalled(const QString& name, const QString& errorText) {
    m_fetched.remove(name);
    m_card->setState(name, {});
    if (!errorText.isEmpty())
        FloatingMessage::show(this, warningIcon(), errorText);
    askPackages(false);
}

void SetupAppInfoDialog::tellNoStore(const QString& package) {
    FloatingMessage::show(this, warningIcon(),
                          tr("No app store could be opened. Please install %1 yourself, then click Next.")
                              .arg(breakable(package)));
}

void SetupAppInfoDialog::fitHeight() {
    layout()->activate();
    resize(width(), layout()->totalHeightForWidth(width()));
}
