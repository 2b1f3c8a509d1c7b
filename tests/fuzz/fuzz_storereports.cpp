// What users' machines send to a server that takes reports: bodies with a good signature, whatever is in
// them, and connections with bodies of any kind.
#include <QCryptographicHash>
#include <QJsonDocument>
#include <cstdlib>

#include "storeserver/catalogue/CatalogueLoader.h"
#include "storeserver/reports/ReportList.h"
#include "storeserver/reports/ReportService.h"
#include "storeserver/reports/ReportSignature.h"
#include "storeserver/server/Conversation.h"
#include "support/StoreFiles.h"

using namespace StoreServer;

namespace {

constexpr qint64 RoomBytes = 256 * 1024;  // soon full, as writing takes long
const QString Secret = "s3cret";

/// Each call is an hour later and of another device, so that no limit of rate is reached.
struct Target {
    QTemporaryDir directory;
    qint64 now = 1700000000000;
    ReportService service{{directory.path(), Secret, RoomBytes, {}, [this] { return now; }}};
    TestSupport::StoreFiles files;
    std::shared_ptr<const Catalogue> catalogue = CatalogueLoader(files.path(), 1).refresh().catalogue;
};

void check(const StoreAnswer& answer) {
    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(answer.body)).object();
    if (object["status"].toInt() != answer.status || !object["datas"].isArray())
        std::abort();
}

void sendSigned(Target& target, std::string_view text, const std::string& path) {
    QJsonObject body;
    if (!ReportBodies::parse(text, &body).isEmpty())
        return;
    body["time"] = QString::number(target.now);
    body["nounce"] = QString::number(target.now);
    const QByteArray covered = (ReportSignature::signedText(body) + Secret).toUtf8();
    body["sign"] = QString::fromLatin1(QCryptographicHash::hash(covered, QCryptographicHash::Sha256).toHex());
    StoreRequest request;
    request.method = "POST";
    request.path = "/store-common-report/" + path;
    request.host = "h";
    request.device["x-device-id"] = std::to_string(target.now);
    check(target.service.answerBody(request, QJsonDocument(body).toJson().toStdString()));
    terminalText(QString::fromUtf8(text.data(), int(text.size())), 20);
}

void converse(Target& target, std::string_view rest, size_t piece) {
    HttpExchange exchange(
        [&target](const StoreRequest& request) {
            const StoreAnswer answer = target.service.answer(request, *target.catalogue);
            check(answer);
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
    static Target target;
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
