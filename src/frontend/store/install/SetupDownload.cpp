#include "store/install/SetupDownload.h"

#include <QDebug>
#include <QDir>
#include <QNetworkRequest>
#include <QStorageInfo>

#include "net/HttpRequest.h"
#include "store/install/SetupFileName.h"

namespace {

constexpr int SilenceMs = 30000;
constexpr qint64 SpareBytes = 64 << 20;  // of the disk that stay free

QByteArray header(const HttpAnswer& answer, const QByteArray& name) {
    for (const auto& pair : answer.headers) {
        if (pair.first.toLower() == name)
            return pair.second;
    }
    return {};
}

}  // namespace

SetupDownload::SetupDownload(QObject* parent) : QObject(parent) {}

SetupDownload::~SetupDownload() = default;

bool SetupDownload::canFetch(const QUrl& url) {
    return url.isValid() && !url.host().isEmpty() && (url.scheme() == "http" || url.scheme() == "https");
}

void SetupDownload::start(const QUrl& url, const QString& directory, const QString& appName) {
    if (isRunning())
        return;
    m_url = url;
    m_directory = directory;
    m_appName = appName;
    m_request = std::make_unique<HttpRequest>(&m_manager);
    m_file = std::make_unique<QTemporaryFile>(directory + "/.setup-XXXXXX.part");
    QDir().mkpath(directory);
    if (!m_file->open()) {
        const QString reason = m_file->errorString();
        QMetaObject::invokeMethod(
            this, [this, reason] { fail(tr("Nothing can be saved in %1.").arg(m_directory), reason); },
            Qt::QueuedConnection);
        return;
    }
    qInfo().noquote() << "download set-up program:" << url.toString(QUrl::RemoveUserInfo);
    HttpRequest::Limits limits;
    limits.wholeMs = 0;
    limits.silenceMs = SilenceMs;
    limits.answerBytes = MaximumBytes;
    m_request->setLimits(limits);
    m_request->setTarget(m_file.get());
    connect(m_request.get(), &HttpRequest::downloadProgress, this, &SetupDownload::onProgress);
    connect(m_request.get(), &HttpRequest::finished, this, &SetupDownload::onFinished);
    m_request->send("GET", QNetworkRequest(url));
}

void SetupDownload::cancel() {
    if (m_request)
        m_request->abort();
}

QString SetupDownload::statusText(int status) {
    constexpr int Unauthorized = 401, Forbidden = 403, NotFound = 404, Gone = 410, FirstServerError = 500;
    if (status == NotFound || status == Gone)
        return tr("The setup program is no longer at its address.");
    if (status == Unauthorized || status == Forbidden)
        return tr(
            "The server does not give the setup program to this program. Download it in a browser and "
            "choose the file below.");
    if (status >= FirstServerError)
        return tr("The server has a problem, please try again later.");
    return tr("The server did not send the setup program (status %1).").arg(status);
}

void SetupDownload::onProgress(qint64 received, qint64 total) {
    if (total > MaximumBytes) {
        fail(tr("The setup program is too large."), QString("%1 bytes are announced").arg(total));
        return;
    }
    const qint64 room = QStorageInfo(m_directory).bytesAvailable();
    if (room >= 0 && room - SpareBytes < qMax<qint64>(0, total - received)) {
        fail(tr("There is not enough room in %1.").arg(m_directory),
             QString("%1 of %2 bytes, %3 are free").arg(received).arg(total).arg(room));
        return;
    }
    Q_EMIT progressChanged(received, total);
}

void SetupDownload::onFinished(const HttpAnswer& answer) {
    using Error = HttpAnswer::Error;
    switch (answer.error) {
        case Error::None:
            save(answer);
            break;
        case Error::Aborted:
            dropRequest();
            m_file.reset();
            Q_EMIT cancelled();
            break;
        case Error::File:
            fail(tr("Nothing can be saved in %1.").arg(m_directory), answer.errorText);
            break;
        case Error::Status:
            fail(statusText(answer.status), answer.errorText);
            break;
        case Error::TooLarge:
            fail(tr("The setup program is too large."), answer.errorText);
            break;
        default:
            fail(tr("The setup program could not be downloaded, please check your network."),
                 answer.errorText);
    }
}

void SetupDownload::save(const HttpAnswer& answer) {
    m_file->flush();
    m_file->seek(0);
    const QString suffix = SetupFileName::suffixOf(m_file->read(SetupFileName::FirstBytes));
    if (suffix.isEmpty()) {
        fail(tr("The address leads to a page and not to a setup program. Download it there and choose the "
                "file below."),
             "no Windows program");
        return;
    }
    const QString name = SetupFileName::of(m_url, header(answer, "content-disposition"), m_appName, suffix);
    const QString path = SetupFileName::freePath(m_directory, name);
    // rename() of a temporary file would replace what came meanwhile.
    if (!QFile::rename(m_file->fileName(), path)) {
        fail(tr("Nothing can be saved in %1.").arg(m_directory), "cannot rename it to " + path);
        return;
    }
    m_file->setAutoRemove(false);
    dropRequest();
    m_file.reset();
    qInfo().noquote() << "downloaded" << path;
    Q_EMIT succeeded(path);
}

void SetupDownload::fail(const QString& errorText, const QString& reason) {
    qWarning().noquote() << "cannot download" << m_url.toString(QUrl::RemoveUserInfo) << reason;
    dropRequest();
    m_file.reset();
    Q_EMIT failed(errorText);
}

/// It may be what calls.
void SetupDownload::dropRequest() {
    m_request->disconnect(this);
    m_request->abort();
    m_request.release()->deleteLater();
}
