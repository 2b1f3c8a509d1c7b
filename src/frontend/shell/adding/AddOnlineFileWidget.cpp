#include "shell/adding/AddOnlineFileWidget.h"

#include <QFileInfo>
#include <QIcon>
#include <QStandardPaths>
#include <QVBoxLayout>

#include "backend/DesktopUtils.h"
#include "backend/InBackground.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/style/Tokens.h"
#include "shell/adding/AddingTexts.h"
#include "shell/adding/FileStateRow.h"
#include "shell/requests/AddInputs.h"
#include "store/install/SetupDownloadRow.h"
#include "widgets/WidgetImages.h"

using namespace Fenk;

namespace {

/// An address without a scheme is one of the web.
QUrl addressIn(const QString& text) {
    const QString line = text.trimmed();
    const bool hasScheme = line.contains("://");
    if (line.size() > AddInputs::MaximumCharacters)
        return {};
    return AddInputs::address(hasScheme || line.isEmpty() ? line : "https://" + line);
}

}  // namespace

AddOnlineFileWidget::AddOnlineFileWidget(QWidget* parent)
    : AddTab(parent), m_address(new LineEdit), m_download(new SetupDownloadRow({}, {}, 0)) {
    setObjectName("add_online_file");
    m_address->setObjectName("online_address");
    m_address->setAccessibleName("online_address");
    m_address->lineEdit()->setAccessibleDescription(AddingTexts::onlineAddress());
    m_address->setPlaceholderText(AddingTexts::onlineAddress());
    m_download->setAccepted({"exe", "msi", "yml", "zip"});
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, Tokens::Space24, 0, 0);
    layout->setSpacing(Tokens::Space16);
    layout->addWidget(m_address);
    layout->addWidget(m_download);
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    auto* hint =
        new Label(tr("The file is saved in %1 and checked before it can be run.").arg(folder), Label::Small);
    hint->setWordWrap(true);
    layout->addWidget(hint);
    layout->addSpacing(Tokens::Space24);
    layout->addWidget(state());
    layout->addStretch();
    setFocusProxy(m_address->lineEdit());
    connect(m_address, &LineEdit::textChanged, this, &AddOnlineFileWidget::onTextChanged);
    connect(m_address, &LineEdit::returnPressed, this, &AddOnlineFileWidget::onReturn);
    connect(m_download, &SetupDownloadRow::started, this, [this] { setBusy(true); });
    connect(m_download, &SetupDownloadRow::stopped, this, &AddOnlineFileWidget::onStopped);
    connect(m_download, &SetupDownloadRow::downloaded, this, &AddOnlineFileWidget::onDownloaded);
}

void AddOnlineFileWidget::setAddress(const QUrl& address) {
    const QString text = address.toString(QUrl::FullyEncoded);
    if (!m_download->isRunning())
        m_address->setText(text);
    else if (text != m_address->text())
        m_address->showAlertMessage(
            tr("A download is running. Add the other address when it has ended, or cancel it."));
}

void AddOnlineFileWidget::clear() {
    if (m_download->isRunning())
        return;
    m_address->setText({});
    AddTab::clear();
}

void AddOnlineFileWidget::onTextChanged(const QString& text) {
    m_download->setUrl(addressIn(text));
    state()->clear();
}

void AddOnlineFileWidget::onReturn() {
    if (state()->isGood() || state()->isChecking())
        return;  // it has just come
    const QUrl address = addressIn(m_address->text());
    if (!address.isEmpty())
        m_download->start();
    else if (m_address->text().trimmed().size() > AddInputs::MaximumCharacters)
        m_address->showAlertMessage(tr("The address is too long."));
    else if (!m_address->text().trimmed().isEmpty())
        m_address->showAlertMessage(
            tr("Only addresses that begin with http:// or https:// can be downloaded."));
}

void AddOnlineFileWidget::setBusy(bool busy) {
    m_address->lineEdit()->setReadOnly(busy);
    if (busy)
        state()->clear();
}

void AddOnlineFileWidget::onDownloaded(const QString& path) {
    setBusy(false);
    state()->check({path});
    // Without its window the process leaves, and the page with it.
    const QString text = window()->isVisible()
                             ? tr("%1 is downloaded. Go on with it in \"Add Program\".")
                             : tr("%1 is downloaded. Drop it on the window of Cellarix to go on.");
    tellElsewhere(text.arg(QFileInfo(path).fileName()), QIcon(widgetImage("ok.svg")));
}

void AddOnlineFileWidget::onStopped(const QString& text) {
    setBusy(false);
    tellElsewhere(text, warningIcon());
}

void AddOnlineFileWidget::tellElsewhere(const QString& text, const QIcon& icon) {
    if (isVisible())
        return;
    if (window()->isVisible()) {
        FloatingMessage::show(window(), icon, text);
        return;
    }
    inBackground(
        window(),
        [text] { return DesktopUtils::notify(tr("Download"), DesktopUtils::notificationText(text)); },
        [hold = PendingWork::instance()->hold()](bool) {});
}
