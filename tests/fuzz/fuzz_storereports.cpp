// What users' machines send to a server that takes reports: bodies with a good signature, whatever is in
// them, and connections with bodies of any kind.
#include <QCryptographicHash>
#include <QDir>
#include <QJsonDocument>
#include <QRegularExpression>
#include <atomic>
#include <cstdlib>

#include "storeserver/catalogue/CatalogueLoader.h"
#include "storeserver/reports/PlainText.h"
#include "storeserver/reports/ReportService.h"
#include "storeserver/reports/ReportSignature.h"
#include "storeserver/server/Conversation.h"
#include "support/StoreFiles.h"

using namespace StoreServer;

namespace {

constexpr qint64 RoomBytes = 512 * 1024;
constexpr qint64 LargestRecord = 1024 * 1024;
const QString Secret = "s3cret";

/// Each call is an hour later and of another device, so that no limit of rate is reached. A full one gives
/// way to an empty one.
struct Target {
    QTemporaryDir directory;
    std::atomic<qint64> now = 1700000000000;  // the keeper's thread asks, too
    ReportService service{{directory.path(), Secret, RoomBytes, {}, [this] { return now.load(); }}};
    TestSupport::StoreFiles files;
    std::shared_ptr<const Catalogue> catalogue = CatalogueLoader(files.path(), 1).refresh().catalogue;
    bool isFull = false;
};

/// What was kept has names of our own, a size, and can be printed.
void checkDirectory(const Target& target) {
    static const QRegularExpression names("\\A\\d{8}-\\d{6}-[0-9a-f]{16}\\z");
    const QDir reports(target.directory.filePath("reports"));
    qint64 bytes = 0;
    for (const QString& name : reports.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
        QFile record(reports.filePath(name) + "/report.json");
        const bool isOpen = record.open(QIODevice::ReadOnly);
        const QByteArray content = record.readAll().trimmed();
        bytes += content.size();
        if (!names.match(name).hasMatch() || !isOpen || content.size() > LargestRecord ||
            plainJson(content) != content || !QJsonDocument::fromJson(content).isObject())
            std::abort();
    }
    if (bytes > RoomBytes)
        std::abort();
}

void check(Target& target, const StoreAnswer& answer) {
    target.isFull = target.isFull || answer.status == 507;
    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(answer.body)).object();
    if (object["status"].toInt() != answer.status || !object["datas"].isArray())
        std::abort();
}

void sendSigned(Target& target, std::string_view text, const std::string& path) {
    QJsonObject body;
    if (!ReportBodies::parse(text, &body).isEmpty())
        return;
    body["time"] = QString::number(target.now);
    body["nounce"] = QString::number(target.now).right(8);
    const QByteArray covered = (ReportSignature::signedText(body) + Secret).toUtf8();
    body["sign"] = QString::fromLatin1(QCryptographicHash::hash(covered, QCryptographicHash::Sha256).toHex());
    StoreRequest request;
    request.method = "POST";
    request.path = "/store-common-report/" + path;
    request.host = "h";
    request.device["x-device-id"] = std::to_string(target.now);
    check(target, target.service.answerBody(request, QJsonDocument(body).toJson().toStdString()));
    checkDirectory(target);
    terminalText(QString::fromUtf8(text.data(), int(text.size())), 20);
}

void converse(Target& target, std::string_view rest, size_t piece) {
    HttpExchange exchange(
        [&target](const StoreRequest& request) {
            const StoreAnswer answer = target.service.answer(request, *target.catalogue);
            check(target, answer);
            return answer;
        },
        [&target](const StoreRequest& head, size_t length) { return target.service.take(head, length); });
    Conversation conversation(exchange, "192.0.2.1");
    while (conversation.phase() != Conversation::Phase::Over && !rest.empty()) {
        conversation.receive(rest.substr(0, piece));
        rest.remove_prefix(std::min(piece, rest.size()));
        while (conversation.phase() == Conversation::Phase::Writing)
            conversation.sent(conversation.output().size());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static std::unique_ptr<Target> current;
    if (!current || current->isFull)
        current = std::make_unique<Target>();
    Target& target = *current;
    target.now += 60 * 60 * 1000;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (size == 0)
        return 0;
    const std::string_view rest = text.substr(1);
    switch (data[0]) {
        case 'f':
            sendSigned(target, rest, "wineAssist/feedback");
            break;
        case 's':
            sendSigned(target, rest, "wineAssist/appScore");
            break;
        case 'u':
            sendSigned(target, rest, "file/getUploadInfo");
            break;
        default:
            converse(target, rest, size_t(data[0]) + 1);
    }
    return 0;
}
