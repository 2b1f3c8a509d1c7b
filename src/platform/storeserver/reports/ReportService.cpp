#include "storeserver/reports/ReportService.h"

#include <QDateTime>
#include <QDebug>

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
constexpr int HeaderLength = 200;
constexpr int CodeLength = 16;

const Refusal Nothing{404, "there is nothing at this path"};
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

QByteArray deviceOf(const StoreRequest& request) {
    return header(request, "x-device-id").toUtf8();
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
      m_directory(settings.directory, settings.roomBytes),
      m_keys(m_directory.ownKey()),
      m_gate(settings.secret),
      m_scores(m_directory.scoresFile()) {}

std::string ReportService::pathOf(const StoreRequest& request) const {
    return m_settings.address.pathBelow(request.path);
}

bool ReportService::isFor(const StoreRequest& request) const {
    return pathOf(request).rfind(Root, 0) == 0;
}

StoreAnswer ReportService::answer(const StoreRequest& request, const Catalogue& catalogue) const {
    if (request.method != "GET" && request.method != "HEAD")
        return reportAnswer({400, "the body is missing"});
    if (pathOf(request) != TypesPath)
        return reportAnswer(Nothing);
    return reportAnswer({}, catalogue.issueTypes());
}

std::unique_ptr<RequestBody> ReportService::take(const StoreRequest& head, size_t length) {
    if (!isFor(head) || length > LargestBody)
        return nullptr;
    if (const Refusal refusal = m_gate.admit(head.client, m_settings.clock()); !refusal.isNone())
        return refused(refusal);
    const std::string path = pathOf(head);
    if (head.method == "PUT" && path.rfind(UploadPath, 0) == 0)
        return takeUpload(head, QString::fromStdString(path.substr(UploadPath.size())), length);
    if (head.method != "POST" || (path != FeedbackPath && path != ScorePath && path != UploadInfoPath))
        return refused(Nothing);
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
    if (const Refusal refusal = m_gate.admitUpload(head.client, length, now); !refusal.isNone())
        return refused(refusal);
    std::unique_ptr<ReportDirectory::Room> room = m_directory.reserve(qint64(length), now);
    if (!room)
        return refused(Full);
    Fenk::OwnedFd file = m_directory.beginUpload(key);
    if (!file.isValid())
        return refused({409, "the address was used before"});
    return std::make_unique<UploadBody>(m_directory, key, std::move(file), std::move(room));
}

StoreAnswer ReportService::answerBody(const StoreRequest& request, std::string_view text) {
    QJsonObject body;
    if (const QString error = ReportBodies::parse(text, &body); !error.isEmpty())
        return reportAnswer({400, error});
    const Refusal refusal = m_gate.admitBody(body, deviceOf(request).toStdString(), m_settings.clock());
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
    if (!m_directory.reserve(ReportDirectory::BlockBytes, now))
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
    QStringList names;
    for (const QString& key : qAsConst(feedback.imageKeys)) {
        if (!hasUpload(request, key, UploadKind::Image))
            return {400, "a picture of the report is not here"};
        names += QString("image-%1").arg(names.size() + 1);
    }
    if (!feedback.logKey.isEmpty()) {
        if (!hasUpload(request, feedback.logKey, UploadKind::Archive))
            return {400, "the logs of the report are not here"};
        names += "logs";
    }
    QStringList keys = feedback.imageKeys;
    if (!feedback.logKey.isEmpty())
        keys += feedback.logKey;
    return save(request, body, feedback.record, keys, names);
}

Refusal ReportService::takeScore(const StoreRequest& request, const QJsonObject& body) {
    ReportBodies::Score score;
    if (const QString error = ReportBodies::readScore(body, &score); !error.isEmpty())
        return {400, error};
    if (!score.fileKey.isEmpty()) {
        if (!hasUpload(request, score.fileKey, UploadKind::Archive))
            return {400, "the file of the score is not here"};
        const QJsonObject record{
            {"appName", score.appName}, {"appVersion", score.appVersion}, {"score", score.score}};
        if (const Refusal refusal = save(request, body, record, {score.fileKey}, {"configuration"});
            !refusal.isNone())
            return refusal;
    }
    if (!m_directory.reserve(ReportDirectory::BlockBytes, m_settings.clock()))
        return Full;
    try {
        m_scores.enter(score.appName, m_keys.pseudonym(deviceOf(request)), score.score,
                       body.value("time").toString().toLongLong());
    } catch (const SqlError& error) {
        qWarning("a score cannot be kept: %s", error.what());
        return {500, "the score cannot be kept"};
    }
    return {};
}

/// The name has nothing of the client but the time and the signature, which were checked. A body that is sent
/// again, also after a restart, has the same.
Refusal ReportService::save(const StoreRequest& request, const QJsonObject& body, const QJsonObject& record,
                            const QStringList& keys, const QStringList& names) {
    const qint64 now = m_settings.clock();
    const auto room =
        m_directory.reserve(4 * ReportDirectory::BlockBytes + qint64(ReportBodies::MaximumBytes), now);
    if (!room)
        return Full;
    const auto utc = [](qint64 ms) { return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC); };
    const QString id = utc(body.value("time").toString().toLongLong()).toString("yyyyMMdd-HHmmss") + '-' +
                       body.value("sign").toString().left(CodeLength);
    QJsonObject whole = record;
    whole.insert("time", utc(now).toString(Qt::ISODate));
    whole.insert("device", QString::fromLatin1(m_keys.pseudonym(deviceOf(request))));
    whole.insert("client", clientOf(request));
    switch (m_directory.save(id, whole, keys, names)) {
        case ReportDirectory::Saved::Yes:
            qInfo().noquote() << "a report has come:" << id;
            break;
        case ReportDirectory::Saved::Before:
            break;
        case ReportDirectory::Saved::No:
            return {500, "the report cannot be kept"};
    }
    return {};
}

}  // namespace StoreServer
