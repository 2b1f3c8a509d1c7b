#include "store/install/SetupDownload.h"

#include <QDebug>
#include <QDir>
#include <QNetworkRequest>
#include <QStorageInfo>

#include "net/HttpRequest.h"
#include "net/LoggedAddress.h"
#include "store/install/SetupFileName.h"

namespace {

constexpr int SilenceMs = 30000;
constexpr int Whole = 200, Partial = 206, NotSatisfiable = 416;
constexpr qint64 SpareBytes = 64 << 20;  // of the disk that stay free

QByteArray header(const HttpAnswer& answer, const QByteArray& name) {
    for (const auto& pair : answer.headers) {
        if (pair.first.toLower() == name)
            return pair.second;
    }
    return {};
}

/// What tells whether the file is still the same. A weak tag does not: the bytes may differ.
QByteArray validatorOf(const QNetworkReply& reply) {
    const QByteArray tag = reply.rawHeader("ETag");
    return tag.isEmpty() || tag.startsWith("W/") ? reply.rawHeader("Last-Modified") : tag;
}

}  // namespace

SetupDownload::SetupDownload(QObject* parent) : QObject(parent) {}

SetupDownload::~SetupDownload() = default;

bool SetupDownload::canFetch(const QUrl& url) {
    return url.isValid() && !url.host().isEmpty() && (url.scheme() == "http" || url.scheme() == "https");
}

bool SetupDownload::canResume(const QUrl& url) const {
    return !isRunning() && m_file && url == m_url && !m_validator.isEmpty() && m_file->size() > 0;
}

void SetupDownload::start(const QUrl& url, const QString& directory, const QString& appName) {
    if (isRunning())
        return;
    const bool resumes = canResume(url) && directory == m_directory;
    m_url = m_lastUrl = url;
    m_directory = directory;
    m_appName = appName;
    m_request = std::make_unique<HttpRequest>(&m_manager);
    if (!resumes) {
        m_validator.clear();
        m_file = std::make_unique<QTemporaryFile>(directory + "/.setup-XXXXXX.part");
        QDir().mkpath(directory);
        if (!m_file->open()) {
            const QString reason = m_file->errorString();
            QMetaObject::invokeMethod(
                this, [this, reason] { fail(tr("Nothing can be saved in %1.").arg(m_directory), reason); },
                Qt::QueuedConnection);
            return;
        }
    }
    m_begin = m_file->size();
    m_file->seek(m_begin);
    qInfo().noquote() << "download set-up program:" << loggedAddress(url) << "from byte" << m_begin;
    send(url);
}

void SetupDownload::send(const QUrl& url) {
    QNetworkRequest request(url);
    if (m_begin > 0) {
        request.setRawHeader("Range", "bytes=" + QByteArray::number(m_begin) + '-');
        request.setRawHeader("If-Range", m_validator);
    }
    HttpRequest::Limits limits;
    limits.wholeMs = 0;
    limits.silenceMs = SilenceMs;
    limits.answerBytes = MaximumBytes - m_begin;
    m_request->setLimits(limits);
    m_request->setTarget(m_file.get());
    connect(m_request.get(), &HttpRequest::downloadProgress, this, &SetupDownload::onProgress);
    connect(m_request.get(), &HttpRequest::finished, this, &SetupDownload::onFinished);
    m_request->send("GET", request);
    if (QNetworkReply* reply = m_request->reply())
        connect(reply, &QNetworkReply::metaDataChanged, this, [this, reply] { onHead(*reply); });
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
            "The server does not give the setup program to this program. Download it in a browser, then "
            "choose its file here.");
    if (status >= FirstServerError)
        return tr("The server has a problem, please try again later.");
    return tr("The server did not send the setup program (status %1).").arg(status);
}

/// Before the first byte of the body is written.
void SetupDownload::onHead(const QNetworkReply& reply) {
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status != Whole && status != Partial)
        return;
    m_lastUrl = reply.url();
    m_validator = validatorOf(reply);
    if (m_begin > 0 && status == Whole) {
        m_file->resize(0);
        m_file->seek(0);
        m_begin = 0;
    } else if (status == Partial &&
               !reply.rawHeader("Content-Range").startsWith("bytes " + QByteArray::number(m_begin) + '-')) {
        fail(tr("The server has a problem, please try again later."), "another part was sent");
    }
}

void SetupDownload::onProgress(qint64 receivedNow, qint64 totalNow) {
    const qint64 received = m_begin + receivedNow;
    const qint64 total = totalNow < 0 ? -1 : m_begin + totalNow;
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
            onStatus(answer);
            break;
        case Error::TooLarge:
            fail(tr("The setup program is too large."), answer.errorText);
            break;
        case Error::Redirect:
            fail(tr("The address leads elsewhere too often, or to a place that is not safe."),
                 answer.errorText);
            break;
        default:
            fail(tr("The setup program could not be downloaded, please check your network."),
                 answer.errorText, Part::Kept);
    }
}

void SetupDownload::onStatus(const HttpAnswer& answer) {
    if (answer.status == NotSatisfiable) {
        fail(tr("The file at the address has changed. Please start again."), answer.errorText);
        return;
    }
    m_file->resize(m_begin);  // without what the server said
    fail(statusText(answer.status), answer.errorText, Part::Kept);
}

QString SetupDownload::suffixOf(const QByteArray& disposition) {
    m_file->seek(0);
    const QByteArray first = m_file->read(SetupFileName::FirstBytes);
    QString suffix = SetupFileName::suffixOf(first);
    if (suffix.isEmpty() && !first.trimmed().startsWith('<') &&
        SetupFileName::isManifestName(m_url, disposition))
        suffix = QStringLiteral("yml");
    return m_accepted.contains(suffix) ? suffix : QString();
}

void SetupDownload::save(const HttpAnswer& answer) {
    if (!m_file->flush()) {  // the disk may be full only now
        fail(tr("Nothing can be saved in %1.").arg(m_directory), m_file->errorString());
        return;
    }
    const QByteArray disposition = header(answer, "content-disposition");
    const QString suffix = suffixOf(disposition);
    if (suffix.isEmpty()) {
        fail(tr("The address leads to a page and not to a setup program. Download it there in a browser, "
                "then choose its file here."),
             "no Windows program");
        return;
    }
    const bool isNamedLast = m_lastUrl.path().endsWith('.' + suffix, Qt::CaseInsensitive);
    const QString name = SetupFileName::of(isNamedLast ? m_lastUrl : m_url, disposition, m_appName, suffix);
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

void SetupDownload::fail(const QString& errorText, const QString& reason, Part part) {
    qWarning().noquote() << "cannot download" << loggedAddress(m_url) << reason;
    dropRequest();
    if (part == Part::Dropped || m_validator.isEmpty() || !m_file->size())
        m_file.reset();
    Q_EMIT failed(errorText);
}

/// It may be what calls.
void SetupDownload::dropRequest() {
    m_request->disconnect(this);
    m_request->abort();
    m_request.release()->deleteLater();
}
