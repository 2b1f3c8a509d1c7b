#include "storeserver/reports/ReportService.h"

#include <QDateTime>
#include <QDebug>
#include <QJsonDocument>
#include <cerrno>

#include "storeserver/reports/ReportAnswer.h"
#include "storeserver/reports/UploadBody.h"
#include "storeserver/reports/UploadContent.h"

namespace StoreServer {

namespace {

const std::string Root = "/store-common-report/";
const std::string TypesPath = Root + "wineAssist/feedback/issueTypeDef";
const std::string FeedbackPath = Root + "wineAssist/feedback";
const std::string ScorePath = Root + "wineAssist/appScore";
const std::string UploadInfoPath = Root + "file/getUploadInfo";
const std::string UploadPath = Root + "file/upload/";
constexpr size_t LargestBody = UploadContent::largest(UploadKind::Archive);
constexpr size_t LargestOther = 1 << 20;  // that is read to its end before it is refused
constexpr int HeaderLength = 200;
const char DeviceHeader[] = "x-device-id";

const Refusal Nothing{404, "there is nothing at this path"};
const Refusal WrongMethod{405, "the method does not fit this path"};
const Refusal Full{507, "the server has no room for more reports"};

/// A signed body, in memory.
class TextBody : public RequestBody {
public:
    explicit TextBody(ReportService& service) : m_service(service) {}

    void write(std::string_view bytes) override { m_text.append(bytes); }
    size_t held() const override { return m_text.capacity(); }
    StoreAnswer answer(const StoreRequest& request) override { return m_service.answerBody(request, m_text); }

private:
    ReportService& m_service;
    std::string m_text;
};

std::unique_ptr<RequestBody> refused(const Refusal& refusal) {
    return std::make_unique<RefusedBody>(refusal);
}

QString header(const StoreRequest& request, const char* name) {
    const auto found = request.device.find(name);
    return found == request.device.end() ? QString()
                                         : QString::fromStdString(found->second).left(HeaderLength);
}

/// What stands for the device: where it is, if it does not say which it is.
QByteArray deviceOf(const StoreRequest& request) {
    const QByteArray device = header(request, DeviceHeader).toUtf8();
    return device.isEmpty() ? "\n" + QByteArray::fromStdString(request.client) : device;
}

/// Of what has a body; empty if there is nothing at a path.
std::string methodOf(const std::string& path) {
    if (path == FeedbackPath || path == ScorePath || path == UploadInfoPath)
        return "POST";
    return path.rfind(UploadPath, 0) == 0 ? "PUT" : "";
}

QJsonObject clientOf(const StoreRequest& request) {
    return {{"version", header(request, "x-client-ver")},    {"arch", header(request, "x-device-arch")},
            {"system", header(request, "x-system-info")},    {"language", header(request, "acceptlanguage")},
            {"wine", header(request, "x-wine-ver")},         {"windows", header(request, "x-windows-ver")},
            {"emulator", header(request, "x-simulator-ver")}};
}

}  // namespace

ReportService::ReportService(const Settings& settings)
    : m_settings(settings),
      m_directory(settings.directory, settings.roomBytes, settings.clock()),
      m_keys(m_directory.ownKey()),
      m_gate(settings.secret, settings.roomBytes),
      m_scores(m_directory.scoresFile()),
      m_keeper(m_directory, m_scores, settings.clock) {}

std::string ReportService::pathOf(const StoreRequest& request) const {
    return m_settings.address.pathBelow(request.path);
}

bool ReportService::isFor(const StoreRequest& request) const {
    return pathOf(request).rfind(Root, 0) == 0;
}

StoreAnswer ReportService::answer(const StoreRequest& request, const Catalogue& catalogue) const {
    const std::string path = pathOf(request);
    const bool isReading = request.method == "GET" || request.method == "HEAD";
    if (path == TypesPath)
        return isReading ? reportAnswer({}, catalogue.issueTypes()) : reportAnswer(WrongMethod);
    const std::string method = methodOf(path);
    if (method.empty())
        return reportAnswer(Nothing);
    StoreAnswer answer =
        reportAnswer(request.method == method ? Refusal{400, "the body is missing"} : WrongMethod);
    answer.allow = method;
    return answer;
}

std::unique_ptr<RequestBody> ReportService::take(const StoreRequest& head, size_t length) {
    const std::string path = pathOf(head);
    const std::string method = methodOf(path);
    const bool isUpload = method == "PUT";
    if (length > LargestBody || (!isUpload && length > LargestOther))
        return nullptr;
    if (const Refusal refusal = m_gate.admit(head.client, m_settings.clock()); !refusal.isNone())
        return refused(refusal);
    if (method.empty())
        return refused(Nothing);
    if (head.method != method)
        return refused(WrongMethod);
    if (isUpload)
        return takeUpload(head, QString::fromStdString(path.substr(UploadPath.size())), length);
    if (length > ReportBodies::MaximumBytes)
        return refused({413, "the body is too large"});
    return std::make_unique<TextBody>(*this);
}

std::unique_ptr<RequestBody> ReportService::takeUpload(const StoreRequest& head, const QString& key,
                                                       size_t length) {
    const qint64 now = m_settings.clock();
    if (!m_keys.isPermitted(key, QByteArray::fromStdString(head.parameter("until")),
                            QByteArray::fromStdString(head.parameter("sig")), now))
        return refused({403, "the address is not valid, or not any more"});
    if (length > UploadContent::largest(UploadKeys::kindOf(key)))
        return refused({413, "the file is too large"});
    if (const Refusal refusal = m_gate.admitBytes(head.client, qint64(length), now); !refusal.isNone())
        return refused(refusal);
    const auto end = [this, client = head.client, length](qint64 bytes) {
        m_gate.giveBack(client, qint64(length) - bytes);
    };
    std::unique_ptr<ReportRoom::Part> part = m_directory.room().reserve(qint64(length), head.client, now);
    if (!part) {
        end(0);
        return refused(Full);
    }
    ReportDirectory::Incoming incoming = m_directory.beginUpload(key);
    if (incoming.error != 0) {
        end(0);
        return refused(incoming.error == EEXIST
                           ? Refusal{409, "the address was used before"}
                           : Refusal{statusOf(incoming.error), "the file cannot be kept"});
    }
    return std::make_unique<UploadBody>(m_directory, key, std::move(incoming.file), std::move(part), end);
}

StoreAnswer ReportService::answerBody(const StoreRequest& request, std::string_view text) {
    QJsonObject body;
    if (const QString error = ReportBodies::parse(text, &body); !error.isEmpty())
        return reportAnswer({400, error});
    const qint64 now = m_settings.clock();
    Refusal refusal = m_gate.admitBody(body, deviceOf(request).toStdString(), now);
    if (refusal.isNone())
        refusal = m_gate.admitBytes(request.client, qint64(text.size()), now);
    if (!refusal.isNone())
        return reportAnswer(refusal);
    const std::string path = pathOf(request);
    if (path == UploadInfoPath)
        return giveUpload(request, body);
    return reportAnswer(path == FeedbackPath ? takeFeedback(request, body) : takeScore(request, body));
}

StoreAnswer ReportService::giveUpload(const StoreRequest& request, const QJsonObject& body) {
    UploadKind kind = UploadKind::Image;
    if (const QString error = ReportBodies::readUpload(body, &kind); !error.isEmpty())
        return reportAnswer({400, error});
    const std::string base = m_settings.address.of(request);
    if (base.empty())
        return reportAnswer({400, "the Host header is missing or invalid"});
    const qint64 now = m_settings.clock();
    if (!m_directory.room().reserve(ReportRoom::BlockBytes, request.client, now))
        return reportAnswer(Full);
    const QString key = m_keys.make(kind, deviceOf(request));
    const std::string permit = m_keys.permit(key, now).toStdString();
    return reportAnswer({}, R"({"upload_url":")" + base + UploadPath + key.toStdString() + '?' + permit +
                                R"(","file_key":")" + key.toStdString() + "\"}");
}

bool ReportService::hasUpload(const StoreRequest& request, const QString& key, UploadKind kind) const {
    return m_keys.belongs(key, kind, deviceOf(request)) && m_directory.hasUpload(key);
}

Refusal ReportService::takeFeedback(const StoreRequest& request, const QJsonObject& body) {
    ReportBodies::Feedback feedback;
    if (const QString error = ReportBodies::readFeedback(body, &feedback); !error.isEmpty())
        return {400, error};
    // After a lost answer a client sends the same again, but for the logs, which it packs anew.
    const QString hasLogs = feedback.logKey.isEmpty() ? "" : "logs";
    ReportDirectory::Report report;
    report.code = codeOf(request, feedback.record, feedback.imageKeys + QStringList(hasLogs));
    report.record = feedback.record;
    if (m_directory.hasReport(report.code, m_settings.clock()))
        return {};
    for (const QString& key : qAsConst(feedback.imageKeys)) {
        if (!hasUpload(request, key, UploadKind::Image))
            return {400, "a picture of the report is not here"};
        report.keys += key;
        report.names += QString("image-%1").arg(report.keys.size());
    }
    if (!feedback.logKey.isEmpty()) {
        if (!hasUpload(request, feedback.logKey, UploadKind::Archive))
            return {400, "the logs of the report are not here"};
        report.keys += feedback.logKey;
        report.names += "logs";
    }
    return save(request, report);
}

Refusal ReportService::takeScore(const StoreRequest& request, const QJsonObject& body) {
    ReportBodies::Score score;
    if (const QString error = ReportBodies::readScore(body, &score); !error.isEmpty())
        return {400, error};
    const qint64 now = m_settings.clock();
    const QJsonObject record{
        {"appName", score.appName}, {"appVersion", score.appVersion}, {"score", score.score}};
    const QByteArray code = codeOf(request, record, {score.fileKey});
    if (!score.fileKey.isEmpty() && !m_directory.hasReport(code, now)) {
        if (!hasUpload(request, score.fileKey, UploadKind::Archive))
            return {400, "the file of the score is not here"};
        const Refusal refusal = save(request, {code, record, {score.fileKey}, {"configuration"}});
        if (!refusal.isNone())
            return refusal;
    }
    // Who does not say which device it is could vote any number of times.
    if (header(request, DeviceHeader).isEmpty())
        return {};
    if (!m_directory.room().reserve(ReportRoom::BlockBytes, request.client, now))
        return Full;
    const auto mark = [](const QByteArray& digits) { return digits.toULongLong(nullptr, 16); };
    try {
        m_scores.enter(
            score.appName,
            {mark(m_keys.pseudonym(deviceOf(request))),
             mark(m_keys.networkPseudonym(QByteArray::fromStdString(request.client))), score.score, now});
    } catch (const SqlError& error) {
        qWarning("a score cannot be kept: %s", error.what());
        return {500, "the score cannot be kept"};
    }
    return {};
}

/// The same for what is the same report, whenever it was signed. `more` is what the record lacks.
QByteArray ReportService::codeOf(const StoreRequest& request, const QJsonObject& record,
                                 const QStringList& more) const {
    return m_keys.contentCode(deviceOf(request), QJsonDocument(record).toJson(QJsonDocument::Compact) + '\n' +
                                                     more.join('\n').toUtf8());
}

Refusal ReportService::save(const StoreRequest& request, const ReportDirectory::Report& report) {
    const qint64 now = m_settings.clock();
    ReportDirectory::Report whole = report;
    whole.record.insert("time", QDateTime::fromMSecsSinceEpoch(now, Qt::UTC).toString(Qt::ISODate));
    whole.record.insert("device", QString::fromLatin1(m_keys.pseudonym(deviceOf(request))));
    whole.record.insert("client", clientOf(request));
    const int error = m_directory.save(whole, request.client, now);
    if (error == 0)
        return {};
    return error == ENOSPC ? Full : Refusal{statusOf(error), "the report cannot be kept"};
}

}  // namespace StoreServer
