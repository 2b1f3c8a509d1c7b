#include "shell/adding/AddOnlineFileWidget.h"

#include <QStandardPaths>
#include <QVBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/style/Tokens.h"
#include "shell/adding/AddingTexts.h"
#include "shell/adding/FileStateRow.h"
#include "store/install/SetupDownload.h"
#include "store/install/SetupDownloadRow.h"

using namespace Fenk;

namespace {

constexpr int LongestAddress = 4096;

/// An address without a scheme is one of the web.
QUrl addressIn(const QString& text) {
    const QString line = text.trimmed();
    const bool hasScheme = line.contains("://");
    return QUrl(hasScheme || line.isEmpty() ? line : "https://" + line, QUrl::TolerantMode);
}

}  // namespace

AddOnlineFileWidget::AddOnlineFileWidget(QWidget* parent)
    : AddTab(parent), m_address(new LineEdit), m_download(new SetupDownloadRow({}, {}, 0)) {
    setObjectName("add_online_file");
    m_address->setObjectName("online_address");
    m_address->setAccessibleName("online_address");
    m_address->lineEdit()->setAccessibleDescription(AddingTexts::onlineAddress());
    m_address->lineEdit()->setMaxLength(LongestAddress);
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
    connect(m_download, &SetupDownloadRow::stopped, this, [this] { setBusy(false); });
    connect(m_download, &SetupDownloadRow::downloaded, this, [this](const QString& path) {
        setBusy(false);
        state()->check({path});
    });
}

void AddOnlineFileWidget::setAddress(const QUrl& address) {
    if (!m_download->isRunning())
        m_address->setText(address.toString());
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
    if (state()->isGood())
        return;  // it has just come
    const QUrl address = addressIn(m_address->text());
    if (SetupDownload::canFetch(address))
        m_download->start();
    else if (!m_address->text().trimmed().isEmpty())
        m_address->showAlertMessage(
            tr("Only addresses that begin with http:// or https:// can be downloaded."));
}

void AddOnlineFileWidget::setBusy(bool busy) {
    m_address->lineEdit()->setReadOnly(busy);
    if (busy)
        state()->clear();
}
