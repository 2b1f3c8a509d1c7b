#include "bottleservice/components/Download.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QRegularExpression>

#include "bottleservice/components/SourceFile.h"
#include "bottleservice/files/Background.h"

namespace {

constexpr int MaximumBreaks = 3;
constexpr int ReportMs = 250;
constexpr qint64 BufferBytes = 4 * 1024 * 1024;
constexpr qint64 LeastBytes = 4096;  // that must arrive within the stall time

/// Whether no connection was possible, in contrast to a server that answers with an error.
bool isUnreachable(QNetworkReply::NetworkError error) {
    switch (error) {
        case QNetworkReply::ConnectionRefusedError:
        case QNetworkReply::HostNotFoundError:
        case QNetworkReply::TimeoutError:
        case QNetworkReply::TemporaryNetworkFailureError:
        case QNetworkReply::NetworkSessionFailedError:
        case QNetworkReply::UnknownNetworkError:
        case QNetworkReply::ProxyConnectionRefusedError:
        case QNetworkReply::ProxyNotFoundError:
        case QNetworkReply::ProxyTimeoutError:
            return true;
        default:
            return false;
    }
}

/// The offset of the first byte of a partial answer, or -1.
qint64 beginOf(const QByteArray& contentRange) {
    static const QRegularExpression pattern("\\Abytes (\\d+)-");
    const QRegularExpressionMatch match = pattern.match(QString::fromLatin1(contentRange));
    return match.hasMatch() ? match.captured(1).toLongLong() : -1;
}

}  // namespace

Download::Download(QNetworkAccessManager* network, const Source& source, const QString& directory,
                   QObject* parent)
    : QObject(parent), m_network(network), m_source(source), m_path(directory + '/' + source.file) {
    m_part.setFileName(partPath());
    m_stall.setSingleShot(true);
    m_quiet.setSingleShot(true);
    m_quiet.setInterval(ReportMs);
    connect(&m_stall, &QTimer::timeout, this, [this] {
        dropReply();
        addressFailed(Reason(Reason::ServerSilent, {m_source.file, shownAddress()}));
    });
}

Download::~Download() {
    *m_cancelled = true;
    dropReply();
}

void Download::start() {
    const QFileInfo place(m_path);
    if (!QDir().mkpath(place.path()))
        qWarning() << "cannot make" << place.path();
    if (place.isFile())
        verify(m_path, false);
    else
        QMetaObject::invokeMethod(this, &Download::tryNext, Qt::QueuedConnection);
}

void Download::cancel() {
    *m_cancelled = true;
    dropReply();
    finish(Reason::Cancelled);
}

void Download::tryNext() {
    if (m_done)
        return;
    if (m_next >= m_source.addresses.size()) {
        finish(m_faults.isEmpty() ? Reason(Reason::NoAddress, {m_source.file}) : m_faults);
        return;
    }
    const QString next = m_source.addresses[m_next++];
    m_breaks = 0;
    const QUrl url(next);
    if (next.startsWith('/'))
        copy(next);
    else if (url.isLocalFile())
        copy(url.toLocalFile());
    else if (url.scheme() == "http" || url.scheme() == "https")
        fetch(next);
    else
        addressFailed(Reason(Reason::FetchFailed, {m_source.file, shownAddress(), "it is no address"}));
}

/// The current address, as it may be shown.
QString Download::shownAddress() const {
    return Source::shownAddress(m_source.addresses.value(m_next - 1));
}

void Download::copy(const QString& path) {
    Background::run(
        this,
        [path, part = partPath(), wanted = m_source, limit = limit(), cancelled = m_cancelled] {
            return SourceFile::copy(path, part, wanted, limit, *cancelled);
        },
        [this](const Reason& fault) {
            if (fault.isEmpty())
                verify(partPath(), true);
            else
                addressFailed(fault);
        });
}

void Download::fetch(const QString& address) {
    // Without a checksum two halves of different files would not be noticed.
    const bool resume = !m_source.sha256.isEmpty();
    if (!m_part.open(resume ? QIODevice::Append : QIODevice::WriteOnly | QIODevice::Truncate)) {
        finish(SourceFile::writeFailure(m_part));
        return;
    }
    m_begin = m_part.size();
    m_isResumed = m_isResumed || (m_begin > 0 && m_breaks == 0);
    QNetworkRequest request{QUrl(address)};
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setRawHeader("Accept-Encoding", "identity");
    if (m_begin > 0)
        request.setRawHeader("Range", "bytes=" + QByteArray::number(m_begin) + '-');
    qInfo() << "fetching" << m_source.file << "from" << address << "at byte" << m_begin;
    m_reply = m_network->get(request);
    m_reply->setReadBufferSize(BufferBytes);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &Download::onHeaders);
    connect(m_reply, &QNetworkReply::readyRead, this, &Download::onBytes);
    connect(m_reply, &QNetworkReply::finished, this, &Download::onReplyFinished);
    m_sinceStall = 0;
    m_stall.start(m_stallMs);
}

void Download::onHeaders() {
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status >= 400 && status != 416) {
        dropReply();
        addressFailed(Reason(Reason::HttpStatus, {m_source.file, shownAddress(), QString::number(status)}));
        return;
    }
    const bool continues = status == 206 && beginOf(m_reply->rawHeader("Content-Range")) == m_begin;
    if (status >= 200 && status < 300 && !continues) {
        m_part.resize(0);
        m_begin = 0;
    }
    const qint64 length = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    m_total = m_source.size >= 0 ? m_source.size : (length > 0 ? m_begin + length : 0);
}

void Download::onBytes() {
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QByteArray bytes = m_reply->readAll();
    if (status < 200 || status >= 300)
        return;  // the body of a redirection
    m_sinceStall += bytes.size();
    if (m_sinceStall >= LeastBytes) {
        m_sinceStall = 0;
        m_stall.start(m_stallMs);
    }
    if (!keep(bytes))
        return;
    reportProgress(false);
}

bool Download::keep(const QByteArray& bytes) {
    if (m_part.size() + bytes.size() > limit()) {
        dropReply();
        m_part.remove();
        addressFailed(Reason(Reason::TooLarge, {m_source.file, shownAddress()}));
        return false;
    }
    if (m_part.write(bytes) == bytes.size() && m_part.flush())
        return true;
    const Reason fault = SourceFile::writeFailure(m_part);
    dropReply();
    finish(fault);
    return false;
}

void Download::onReplyFinished() {
    onBytes();  // the last bytes
    if (!m_reply)
        return;
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QString address = m_reply->request().url().toString();
    // A connection that closes too soon is not always reported as an error.
    const bool isShort = m_total > 0 && m_part.size() < m_total;
    const bool isError = m_reply->error() != QNetworkReply::NoError;
    const Reason fault = replyFault();
    const bool isWhole = !isError && !isShort && status >= 200 && status < 300;
    const bool hasGrown = m_part.size() > m_begin;
    const qint64 have = m_part.size();
    dropReply();
    if (isWhole || (status == 416 && have > 0 && have == m_source.size)) {
        reportProgress(true);
        verify(partPath(), true);
    } else if (status == 416) {
        QFile::remove(partPath());
        if (++m_breaks <= MaximumBreaks)
            fetch(address);
        else
            addressFailed(fault);
    } else if (status < 400 && hasGrown && !m_source.sha256.isEmpty() && ++m_breaks <= MaximumBreaks) {
        qInfo() << "the transfer of" << m_source.file << "broke off:" << fault.text();
        fetch(address);
    } else {
        addressFailed(fault);
    }
}

/// Why the current reply did not bring the whole file.
Reason Download::replyFault() const {
    if (m_reply->error() == QNetworkReply::NoError ||
        m_reply->error() == QNetworkReply::RemoteHostClosedError)
        return Reason(Reason::ClosedTooSoon, {m_source.file, shownAddress()});
    if (isUnreachable(m_reply->error()))
        return Reason(Reason::NoConnection, {m_source.file, shownAddress()});
    return Reason(Reason::FetchFailed, {m_source.file, shownAddress(), m_reply->errorString()});
}

void Download::verify(const QString& path, bool isPart) {
    Background::run(
        this,
        [path, source = m_source, from = shownAddress(), cancelled = m_cancelled] {
            return SourceFile::check(path, source, from, *cancelled);
        },
        [this, path, isPart](const Reason& fault) { onVerified(fault, path, isPart); });
}

void Download::onVerified(const Reason& fault, const QString& path, bool isPart) {
    if (m_done)
        return;
    if (!fault.isEmpty()) {
        QFile::remove(path);
        // The part that was resumed may have been of another file: try the address again from the start.
        const bool isMixed = isPart && std::exchange(m_isResumed, false);
        if (isMixed)
            --m_next;
        if (isPart && !isMixed)
            addressFailed(fault);
        else
            tryNext();
        return;
    }
    if (isPart && ::rename(QFile::encodeName(path).constData(), QFile::encodeName(m_path).constData()) != 0) {
        finish(QString("Cannot rename %1.").arg(path));
        return;
    }
    finish({});
}

void Download::dropReply() {
    m_stall.stop();
    m_part.close();
    QNetworkReply* reply = std::exchange(m_reply, nullptr);
    if (!reply)
        return;
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

void Download::addressFailed(const Reason& reason) {
    if (m_done)
        return;
    qWarning() << m_source.file << "was not fetched:" << reason.text();
    m_faults += reason;
    tryNext();
}

void Download::finish(const Reason& reason) {
    if (std::exchange(m_done, true))
        return;
    QMetaObject::invokeMethod(
        this, [this, reason] { Q_EMIT finished(reason.isEmpty() ? m_path : QString(), reason); },
        Qt::QueuedConnection);
}

void Download::reportProgress(bool always) {
    if (m_quiet.isActive() && !always)
        return;
    m_quiet.start();
    Q_EMIT progress(QFileInfo(partPath()).size(), m_total);
}
