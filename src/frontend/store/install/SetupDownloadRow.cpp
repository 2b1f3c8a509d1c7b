#include "store/install/SetupDownloadRow.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>

#include "backend/TextUtils.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "store/install/SetupDownload.h"

using namespace Fenk;

namespace {
constexpr int BarSteps = 1000;
}

SetupDownloadRow::SetupDownloadRow(const QUrl& url, const QString& appName, qint64 expectedBytes,
                                   QWidget* parent)
    : QWidget(parent),
      m_url(url),
      m_appName(appName),
      m_expectedBytes(expectedBytes),
      m_download(new SetupDownload(this)),
      m_button(new QPushButton(tr("Download"))),
      m_discard(new QPushButton(tr("Discard"))),
      m_bar(new QProgressBar),
      m_text(new Label(Label::Small)) {
    setObjectName("setup_download_row");
    m_button->setAccessibleName("download_btn");
    m_button->setAutoDefault(false);
    m_discard->setAccessibleName("discard_download_btn");
    m_discard->setAccessibleDescription(m_discard->text());
    m_discard->setAutoDefault(false);
    m_bar->setObjectName("download_bar");
    m_bar->setTextVisible(false);
    m_bar->setRange(0, BarSteps);
    m_bar->hide();
    m_text->setObjectName("download_text");
    m_text->setWordWrap(true);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(m_button);
    layout->addWidget(m_discard);
    auto* progress = new QVBoxLayout;
    progress->setSpacing(Tokens::Space4);
    progress->addWidget(m_bar);
    progress->addWidget(m_text);
    layout->addLayout(progress, 1);
    connect(m_button, &QPushButton::clicked, this, &SetupDownloadRow::toggle);
    connect(m_discard, &QPushButton::clicked, this, &SetupDownloadRow::discard);
    connect(m_download, &SetupDownload::progressChanged, this, &SetupDownloadRow::showProgress);
    connect(m_download, &SetupDownload::cancelled, this, [this] { stop(tr("Cancelled"), false); });
    connect(m_download, &SetupDownload::failed, this, [this](const QString& text) { stop(text, true); });
    connect(m_download, &SetupDownload::succeeded, this, &SetupDownloadRow::onSaved);
    setUrl(url);
}

void SetupDownloadRow::setUrl(const QUrl& url) {
    if (isRunning())
        return;
    m_url = url;
    m_button->setEnabled(SetupDownload::canFetch(url));
    showIdle(m_button->isEnabled() ? tr("It comes from %1").arg(m_url.host()) : QString(), false);
}

void SetupDownloadRow::setAccepted(const QStringList& suffixes) {
    m_download->setAccepted(suffixes);
}

bool SetupDownloadRow::isRunning() const {
    return m_download->isRunning();
}

void SetupDownloadRow::toggle() {
    if (isRunning())
        m_download->cancel();
    else
        start();
}

void SetupDownloadRow::discard() {
    m_download->discard();
    m_button->setFocus();  // as this one goes
    showIdle({}, false);
}

void SetupDownloadRow::start() {
    if (isRunning() || !m_button->isEnabled())
        return;
    m_button->setText(tr("Cancel"));
    m_button->setAccessibleDescription(m_button->text());
    m_text->setTextRole(Theme::Secondary);
    m_text->setText(tr("Connecting to %1").arg(m_url.host()));
    m_discard->hide();
    m_bar->setRange(0, 0);
    m_bar->show();
    Q_EMIT started();
    m_download->start(m_url, QStandardPaths::writableLocation(QStandardPaths::DownloadLocation), m_appName);
}

void SetupDownloadRow::onSaved(const QString& path) {
    const bool isOther = m_expectedBytes > 0 && QFileInfo(path).size() != m_expectedBytes;
    showIdle(isOther ? tr("Saved as %1. It has another size than expected.").arg(path)
                     : tr("Saved as %1").arg(path),
             false);
    if (isOther)
        m_text->setTextRole(Theme::Warning);
    Q_EMIT downloaded(path);
}

void SetupDownloadRow::showProgress(qint64 received, qint64 total) {
    const QString done = TextUtils::readableSize(received);
    if (total > 0) {
        m_bar->setRange(0, BarSteps);
        m_bar->setValue(int(double(received) / double(total) * BarSteps));
        m_text->setText(tr("%1 of %2").arg(done, TextUtils::readableSize(total)));
    } else {
        m_text->setText(done);
    }
}

void SetupDownloadRow::stop(const QString& text, bool isError) {
    showIdle(text, isError);
    Q_EMIT stopped(text);
}

void SetupDownloadRow::showIdle(const QString& text, bool isError) {
    const bool canResume = m_download->canResume(m_url);
    m_button->setText(canResume ? tr("Continue") : tr("Download"));
    m_discard->setVisible(canResume);
    m_button->setAccessibleDescription(m_button->text());
    m_bar->hide();
    m_text->setTextRole(isError ? Theme::Danger : Theme::Secondary);
    m_text->setText(text);
}
