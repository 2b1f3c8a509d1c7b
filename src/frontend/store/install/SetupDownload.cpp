#include "store/install/SetupDownload.h"

#include <QDebug>
#include <QNetworkRequest>
#include <QStorageInfo>

#include "backend/InBackground.h"
#include "launch/inspection/OpenRefusal.h"
#include "launch/inspection/ProgramHeader.h"
#include "net/HttpRequest.h"
#include "net/LoggedAddress.h"
#include "store/install/DownloadPart.h"
#include "store/install/SetupFileName.h"

namespace {

constexpr int SilenceMs = 30000, RoomMs = 1000;
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

SetupDownload::~SetupDownload() {
    const bool isSaved = isRunning() && !m_request;  // by another thread
    m_request.reset();
    if (m_part && !isSaved)
        m_part->settle();
}

bool SetupDownload::canFetch(const QUrl& url) {
    return url.isValid() && !url.host().isEmpty() && (url.scheme() == "http" || url.scheme() == "https");
}

bool SetupDownload::canResume(const QUrl& url) const {
    return !isRunning() && m_part && url == m_url && m_part->canBeResumed();
}

void SetupDownload::discard() {
    if (isRunning() || !m_part)
        return;
    m_part->discard();
    m_part.reset();
}

void SetupDownload::start(const QUrl& url, const QString& directory, const QString& appName) {
    if (isRunning())
        return;
    if (m_part && (!canResume(url) || directory != m_directory)) {
        m_part->settle();
        m_part.reset();
    }
    m_url = m_lastUrl = url;
    m_directory = directory;
    m_appName = appName;
    m_isCancelled = false;
    m_roomAsked.invalidate();
    m_hold = PendingWork::instance()->holdForTransfer();
    using Opened = std::pair<std::shared_ptr<DownloadPart>, QString>;
    const auto open = [url, directory, part = m_part] {
        Opened opened{part, {}};
        if (!part)
            opened.first = DownloadPart::open(directory, url, &opened.second);
        return opened;
    };
    inBackground(
        this, open, [this](const Opened& opened) { onOpened(opened.first, opened.second); }, m_thread.pool());
}

void SetupDownload::onOpened(const std::shared_ptr<DownloadPart>& part, const QString& reason) {
    m_part = part;
    if (m_isCancelled) {
        endCancelled();
        return;
    }
    if (!m_part) {
        fail(tr("Nothing can be saved in %1.").arg(m_directory), reason);
        return;
    }
    m_request = std::make_unique<HttpRequest>(&m_manager);
    m_begin = m_part->file()->size();
    m_part->file()->seek(m_begin);
    qInfo().noquote() << "download set-up program:" << loggedAddress(m_url) << "from byte" << m_begin;
    send(m_url);
}

void SetupDownload::send(const QUrl& url) {
    QNetworkRequest request(url);
    if (m_begin > 0) {
        request.setRawHeader("Range", "bytes=" + QByteArray::number(m_begin) + '-');
        request.setRawHeader("If-Range", m_part->validator());
    }
    HttpRequest::Limits limits;
    limits.wholeMs = 0;
    limits.silenceMs = SilenceMs;
    limits.answerBytes = MaximumBytes - m_begin;
    m_request->setLimits(limits);
    m_request->setTarget(m_part->file());
    connect(m_request.get(), &HttpRequest::downloadProgress, this, &SetupDownload::onProgress);
    connect(m_request.get(), &HttpRequest::finished, this, &SetupDownload::onFinished);
    m_request->send("GET", request);
    if (QNetworkReply* reply = m_request->reply())
        connect(reply, &QNetworkReply::metaDataChanged, this, [this, reply] { onHead(*reply); });
}

void SetupDownload::cancel() {
    m_isCancelled = true;
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
    if (m_begin > 0 && status == Whole) {
        m_part->restart();
        m_begin = 0;
    } else if (status == Partial &&
               !reply.rawHeader("Content-Range").startsWith("bytes " + QByteArray::number(m_begin) + '-')) {
        fail(tr("The server has a problem, please try again later."), "another part was sent");
        return;
    }
    m_part->setValidator(validatorOf(reply));
}

void SetupDownload::onProgress(qint64 receivedNow, qint64 totalNow) {
    const qint64 received = m_begin + receivedNow;
    const qint64 total = totalNow < 0 ? -1 : m_begin + totalNow;
    if (total > MaximumBytes) {
        fail(tr("The setup program is too large."), QString("%1 bytes are announced").arg(total));
        return;
    }
    checkRoom(qMax<qint64>(0, total - received));
    Q_EMIT progressChanged(received, total);
}

/// Seldom, since asking may take its time.
void SetupDownload::checkRoom(qint64 missing) {
    if (m_roomAsked.isValid() && !m_roomAsked.hasExpired(RoomMs))
        return;
    m_roomAsked.start();
    inBackground(
        this, [directory = m_directory] { return QStorageInfo(directory).bytesAvailable(); },
        [this, missing](qint64 room) {
            if (m_request && room >= 0 && room - SpareBytes < missing)
                fail(tr("There is not enough room in %1.").arg(m_directory),
                     QString("%1 bytes are missing, %2 are free").arg(missing).arg(room), Part::Kept);
        },
        m_thread.pool());
}

void SetupDownload::onFinished(const HttpAnswer& answer) {
    using Error = HttpAnswer::Error;
    switch (answer.error) {
        case Error::None:
            onWhole(answer);
            break;
        case Error::Aborted:
            endCancelled();
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
    m_part->file()->resize(m_begin);  // without what the server said
    fail(statusText(answer.status), answer.errorText, Part::Kept);
}

struct SetupDownload::Names {
    QUrl url, lastUrl;
    QByteArray disposition;
    QString directory, appName;
    QStringList accepted;
};

QString SetupDownload::suffixOf(const DownloadPart& part, const Names& names) {
    part.file()->seek(0);
    const QByteArray first = part.file()->read(SetupFileName::FirstBytes);
    QString suffix = SetupFileName::suffixOf(first);
    if (suffix.isEmpty() && !first.trimmed().startsWith('<') &&
        (SetupFileName::isManifestName(names.url, names.disposition) ||
         SetupFileName::isManifestName(names.lastUrl, names.disposition)))
        suffix = QStringLiteral("yml");
    // Old documents begin like packages.
    const bool isOther = suffix == "msi" && !ProgramHeader::read(part.path()).isPackage;
    return names.accepted.contains(suffix) && !isOther ? suffix : QString();
}

void SetupDownload::onWhole(const HttpAnswer& answer) {
    dropRequest();
    const Names names{m_url,       m_lastUrl, header(answer, "content-disposition"),
                      m_directory, m_appName, m_accepted};
    inBackground(
        this, [part = m_part, names] { return save(part.get(), names); },
        [this](const Saved& saved) { onSaved(saved); }, m_thread.pool());
}

SetupDownload::Saved SetupDownload::save(DownloadPart* part, const Names& names) {
    const QString cannotSave = tr("Nothing can be saved in %1.").arg(names.directory);
    if (!part->file()->flush())  // the disk may be full only now
        return {{}, cannotSave, part->file()->errorString()};
    const QString suffix = suffixOf(*part, names);
    if (suffix.isEmpty()) {
        const bool isPage = ProgramHeader::read(part->path()).format == ProgramHeader::Web;
        return {{},
                isPage ? tr("The address leads to a page and not to a setup program. Download it there in a "
                            "browser, then choose its file here.")
                       : tr("The address does not lead to a setup program. %1")
                             .arg(OpenRefusal::ofOther(part->path()).reason),
                "no Windows program"};
    }
    const bool isNamedLast = names.lastUrl.path().endsWith('.' + suffix, Qt::CaseInsensitive) ||
                             (suffix == "yml" && SetupFileName::isManifestName(names.lastUrl, {}));
    const QString name =
        SetupFileName::of(isNamedLast ? names.lastUrl : names.url, names.disposition, names.appName, suffix);
    const QString path = SetupFileName::freePath(names.directory, name);
    return part->moveTo(path) ? Saved{path, {}, {}}
                              : Saved{{}, cannotSave, "cannot rename it to " + path, Part::Kept};
}

void SetupDownload::onSaved(const Saved& saved) {
    if (saved.path.isEmpty()) {
        fail(saved.errorText, saved.reason, saved.part);
        return;
    }
    end(Part::Dropped);
    qInfo().noquote() << "downloaded" << saved.path;
    Q_EMIT succeeded(saved.path);
}

void SetupDownload::endCancelled() {
    end(Part::Kept);
    Q_EMIT cancelled();
}

void SetupDownload::end(Part part) {
    dropRequest();
    if (m_part && part == Part::Dropped && m_part->file())
        m_part->discard();
    if (m_part && !m_part->canBeResumed()) {
        m_part->settle();
        m_part.reset();
    }
    m_hold.reset();
}

void SetupDownload::fail(const QString& errorText, const QString& reason, Part part) {
    qWarning().noquote() << "cannot download" << loggedAddress(m_url) << reason;
    end(part);
    Q_EMIT failed(errorText);
}

/// It may be what calls.
void SetupDownload::dropRequest() {
    if (!m_request)
        return;
    m_request->disconnect(this);
    m_request->abort();
    m_request.release()->deleteLater();
}
