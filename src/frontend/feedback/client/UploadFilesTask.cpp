#include "feedback/client/UploadFilesTask.h"

#include <QDebug>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QProcess>
#include <QUrl>

#include "feedback/client/UploadPlace.h"
#include "fenk/system/RegularFile.h"
#include "net/HttpRequest.h"
#include "net/LoggedAddress.h"

using Error = HttpAnswer::Error;

namespace {

const char ArchiveSuffix[] = "tar.gz";
const char Cancelled[] = "cancelled";
constexpr int LongestText = 2000;  // of the archiver, and of the service's reason
constexpr int TarFailed = 2;
constexpr int StatusOk = 200;
constexpr int LongestKey = 1024;  // it becomes a part of the report

QString descOf(const QJsonObject& reply) {
    return reply.value("desc").toString().simplified().left(LongestText);
}

/// A service that refuses may say why, too.
QString failureOf(const HttpAnswer& answer) {
    const QString desc = descOf(QJsonDocument::fromJson(answer.body).object());
    return desc.isEmpty() ? answer.errorText : answer.errorText + ": " + desc;
}

/// With an error text: no regular file, unreadable, too large, or being written.
QByteArray readWhole(const QString& path, QString* errorText) {
    QFile file;
    if (!Fenk::RegularFile::open(file, path, Fenk::RegularFile::Links::Followed))
        *errorText = QStringLiteral("cannot be opened");
    else if (file.size() > UploadFilesTask::MaximumBytes)
        *errorText = QStringLiteral("is larger than %1 bytes").arg(UploadFilesTask::MaximumBytes);
    if (!errorText->isEmpty())
        return {};
    const qint64 size = file.size();
    const QByteArray bytes = file.read(size + 1);
    if (bytes.size() != size)
        *errorText = QStringLiteral("was changed while it was read");
    return bytes;
}

QStringList archiveArguments(const QString& archive, const QStringList& paths) {
    QStringList arguments{"-zcvf", archive, "--owner=root:0", "--group=root:0"};
    for (const QString& path : paths) {
        const QFileInfo file(path);
        arguments << "-C" << file.absolutePath() << "./" + file.fileName();
    }
    return arguments;
}

}  // namespace

UploadFilesTask::UploadFilesTask(const QStringList& filePaths, int fileType, const ReportAccess& access,
                                 int replyCount, QObject* parent)
    : QObject(parent),
      m_filePaths(filePaths),
      m_fileType(fileType),
      m_access(access),
      m_replyCount(replyCount) {
    setAutoDelete(false);
}

void UploadFilesTask::onCancelUpload() {
    m_isCancelled = true;
    Q_EMIT cancelRequested();
}

void UploadFilesTask::onUploadProgress(qint64 bytesSent, qint64 bytesTotal) {
    qDebug().noquote() << QString("Upload %1 progress:").arg(firstPath()) << "Sent:" << bytesSent
                       << "Total:" << bytesTotal;
    Q_EMIT sigUploadProgress(firstPath(), bytesSent, bytesTotal);
}

void UploadFilesTask::endUnstarted() {
    m_isCancelled = true;
    deliver(Cancelled);
}

void UploadFilesTask::run() {
    qInfo("UploadFilesTask started");
    QString errorText;
    {
        QNetworkAccessManager network;
        errorText = uploadFile(&network);
    }
    deliver(errorText);
}

/// The last that the pool's thread does with this object, which the receiver of the signal may delete.
void UploadFilesTask::deliver(const QString& errorText) {
    QMetaObject::invokeMethod(
        this,
        [this, errorText] {
            const bool isGood = errorText.isEmpty();
            Q_EMIT sigUploadFinished(isGood ? UploadFilesTaskStatus::Success : UploadFilesTaskStatus::Failure,
                                     firstPath(), isGood ? m_fileKey : errorText, m_replyCount);
        },
        Qt::QueuedConnection);
}

/// These return an error text, empty when all is well.
QString UploadFilesTask::uploadFile(QNetworkAccessManager* network) {
    if (const QString errorText = fetchAddress(network); !errorText.isEmpty()) {
        qWarning().noquote() << "Get file upload address failed" << errorText;
        return errorText;
    }
    qInfo().noquote() << "Get file upload address finished:" << loggedAddress(QUrl(m_uploadUrl))
                      << ", fileKey: " + m_fileKey;
    return m_fileType == Image ? uploadImage(network) : uploadLogs(network);
}

QString UploadFilesTask::fetchAddress(QNetworkAccessManager* network) {
    if (m_fileType != Image && m_fileType != Logs) {
        qWarning() << "Unknown file type:" << m_fileType;
        return QStringLiteral("unknown file type");
    }
    const QFileInfo file(firstPath());
    if (m_fileType == Image && !file.isFile()) {
        qWarning().noquote() << "File not exist:" << firstPath();
        return QStringLiteral("no such file");
    }
    if (!m_access.canSign())
        return m_access.whyNot();
    QNetworkRequest request = m_access.request("/store-common-report/file/getUploadInfo");
    const QByteArray body =
        m_access.signedBody({{"from", "wineAssist"},
                             {"type", m_fileType == Image ? "image" : "attach"},
                             {"fileSuffix", m_fileType == Image ? file.suffix() : ArchiveSuffix}},
                            &request);
    const HttpAnswer answer = send(network, "POST", request, body, false);
    if (answer.error == Error::None)
        return takeAddress(answer);
    const QString text = failureOf(answer);
    qWarning().noquote() << "GET network request failed:" << text;
    return text;
}

QString UploadFilesTask::takeAddress(const HttpAnswer& answer) {
    QJsonParseError error;
    const QJsonObject reply = QJsonDocument::fromJson(answer.body, &error).object();
    if (!reply.contains("status") || !reply.value("datas").isArray()) {
        qWarning().noquote() << "Parse upload address failed" << error.errorString();
        return QStringLiteral("no address in the answer");
    }
    if (reply.value("status").toInt() != StatusOk) {
        const QString desc = descOf(reply);
        return desc.isEmpty() ? QStringLiteral("the service refuses the file") : desc;
    }
    for (const QJsonValue& data : reply.value("datas").toArray()) {
        if (data["upload_url"].isString())
            m_uploadUrl = data["upload_url"].toString();
        if (data["file_key"].isString())
            m_fileKey = data["file_key"].toString();
    }
    if (m_uploadUrl.isEmpty() || m_fileKey.isEmpty() || m_fileKey.size() > LongestKey)
        return QStringLiteral("no address in the answer");
    return m_access.trusts(QUrl(m_uploadUrl))
               ? QString()
               : QStringLiteral("the address in the answer is less safe than the service's");
}

QString UploadFilesTask::uploadImage(QNetworkAccessManager* network) {
    qInfo().noquote() << "Start upload image:" << firstPath();
    QString errorText;
    const QByteArray bytes = readWhole(firstPath(), &errorText);
    if (!errorText.isEmpty()) {
        qWarning().noquote() << "Open image file failed:" << firstPath() << errorText;
        return errorText;
    }
    errorText = put(network, bytes);
    if (errorText.isEmpty())
        qInfo().noquote() << "Upload image succeeded:" << firstPath();
    else
        qWarning().noquote() << "Upload image failed:" << firstPath() << errorText;
    return errorText;
}

QString UploadFilesTask::uploadLogs(QNetworkAccessManager* network) {
    qInfo("Start upload log");
    const QString archive = UploadPlace::newArchive();
    QString errorText = makeArchive(archive);
    if (errorText.isEmpty()) {
        const QByteArray bytes = readWhole(archive, &errorText);
        if (errorText.isEmpty())
            errorText = put(network, bytes);
        else
            qWarning().noquote() << "Open archive file failed:" << archive << errorText;
    }
    const bool isRemoved = QFile::remove(archive);
    const QString end = errorText.isEmpty() ? QStringLiteral("Upload log succeeded: %1, remove tmp file:")
                                            : QStringLiteral("Upload log failed: %1, remove tmp file:");
    qInfo().noquote() << end.arg(firstPath()) << (isRemoved ? "true" : "false") << errorText;
    return errorText;
}

/// Paths and owners in an archive would name the user: it has the names of the files and directories alone.
/// A file that changed while it was read (code 1) is no failure; one that is lacking is.
QString UploadFilesTask::makeArchive(const QString& archive) {
    QProcess tar;
    QEventLoop loop;
    tar.setStandardOutputFile(QProcess::nullDevice());
    QObject::connect(&tar, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), &loop,
                     &QEventLoop::quit);
    QObject::connect(&tar, &QProcess::errorOccurred, &loop, &QEventLoop::quit);
    QObject::connect(this, &UploadFilesTask::cancelRequested, &tar, &QProcess::kill);
    if (!isCancelled()) {
        tar.start("tar", archiveArguments(archive, m_filePaths));
        if (tar.state() != QProcess::NotRunning)
            loop.exec();
        tar.waitForFinished(-1);
    }
    qInfo() << "Compress log files finished:" << tar.exitCode();
    if (tar.exitCode() != 0)
        qWarning().noquote() << "tar says:"
                             << QString::fromLocal8Bit(tar.readAllStandardError().left(LongestText));
    if (isCancelled())
        return Cancelled;
    if (tar.exitStatus() == QProcess::CrashExit)
        return QStringLiteral("tar was killed or crashed");
    const bool hasFailed = tar.error() != QProcess::FailedToStart && tar.exitCode() >= TarFailed;
    return hasFailed ? QStringLiteral("tar failed with code %1").arg(tar.exitCode()) : QString();
}

QString UploadFilesTask::put(QNetworkAccessManager* network, const QByteArray& bytes) {
    const HttpAnswer answer = send(network, "PUT", QNetworkRequest(QUrl(m_uploadUrl)), bytes, true);
    if (answer.error == Error::None)
        return {};
    const QString text = failureOf(answer);
    qWarning().noquote() << "PUT network request failed:" << text;
    return text;
}

HttpAnswer UploadFilesTask::send(QNetworkAccessManager* network, const QByteArray& verb,
                                 const QNetworkRequest& request, const QByteArray& body, bool showsProgress) {
    QEventLoop loop;
    HttpRequest http(network);
    http.setLimits({m_timeOutMs, 0});
    HttpAnswer result;
    bool isFinished = false;
    QObject::connect(&http, &HttpRequest::finished, &loop, [&](const HttpAnswer& answer) {
        result = answer;
        isFinished = true;
        loop.quit();
    });
    if (showsProgress)
        QObject::connect(&http, &HttpRequest::uploadProgress, &http,
                         [this](qint64 sent, qint64 total) { onUploadProgress(sent, total); });
    // Arrives in this thread's loop. A request of before the connection is seen by the flag.
    QObject::connect(this, &UploadFilesTask::cancelRequested, &http, &HttpRequest::abort);
    QNetworkRequest plain = request;
    plain.setRawHeader("Accept-Language", "*");  // the network layer would tell the desktop's language
    http.send(verb, plain, body);
    if (isCancelled())
        http.abort();
    if (!isFinished)
        loop.exec();
    return result;
}
