#include "storeserver/reports/ReportBodies.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <cmath>

#include "storeserver/reports/JsonScan.h"

namespace StoreServer {

namespace ReportBodies {

namespace {

constexpr int MaximumTypes = 50;
constexpr int MaximumImages = 9;
constexpr int KeyLength = 128;
constexpr int LabelLength = 255;
constexpr int DescriptionLength = 20000;
constexpr int UrlLength = 4096;
constexpr int FactLength = 1000;
constexpr int MostGraphicsDevices = 16;
constexpr int ScoredNameLength = 50;
constexpr int BestScore = 5;

/// Reads fields of one body. After the first error the rest is empty.
class Fields {
public:
    Fields(const QJsonObject& body, QStringList known) : m_body(body) {
        known += QStringList{"time", "nounce", "sign"};
        for (const QString& key : body.keys()) {
            if (!known.contains(key))
                refuse("a field is not known to this server");
        }
    }

    /// A missing one is empty.
    QString text(const QString& key, int maximum) {
        const QJsonValue value = m_body.value(key);
        if (value.isUndefined() || checked(value, key, maximum))
            return value.toString();
        return {};
    }
    QStringList texts(const QString& key, int most, int maximum) {
        const QJsonValue value = m_body.value(key);
        const QJsonArray items = value.toArray();
        if ((!value.isArray() && !value.isUndefined()) || items.size() > most)
            refuse(QString("%1 is no list of at most %2 texts").arg(key).arg(most));
        QStringList all;
        for (const QJsonValue& item : items) {
            if (m_error.isEmpty() && checked(item, key, maximum))
                all += item.toString();
        }
        return all;
    }
    QJsonObject object(const QString& key) {
        const QJsonValue value = m_body.value(key);
        if (!value.isObject() && !value.isUndefined())
            refuse(key + " is no object");
        return value.toObject();
    }
    void refuse(const QString& text) {
        if (m_error.isEmpty())
            m_error = text;
    }
    QString error() const { return m_error; }

private:
    bool checked(const QJsonValue& value, const QString& key, int maximum) {
        if (value.isString() && value.toString().size() <= maximum)
            return true;
        refuse(QString("%1 is no text of at most %2 characters").arg(key).arg(maximum));
        return false;
    }

    const QJsonObject& m_body;
    QString m_error;
};

/// Texts by known names, of bounded length.
QJsonObject facts(const QJsonObject& object, const QStringList& names) {
    QJsonObject known;
    for (const QString& name : names) {
        if (object.value(name).isString())
            known.insert(name, object.value(name).toString().left(FactLength));
    }
    return known;
}

/// What clients tell of a machine, without its id.
QJsonObject hardwareFacts(const QJsonObject& hardware) {
    QJsonObject known = facts(hardware, {"cpu", "nvidia", "mesa", "os", "arch"});
    QJsonArray devices;
    for (const QJsonValue& device : hardware.value("gpus").toArray()) {
        if (devices.size() < MostGraphicsDevices)
            devices.append(facts(device.toObject(), {"gpu", "module"}));
    }
    if (!devices.isEmpty())
        known.insert("gpus", devices);
    return known;
}

}  // namespace

QString parse(std::string_view bytes, QJsonObject* body) {
    if (bytes.size() > MaximumBytes || !isParsableJson(bytes, MaximumDepth))
        return "the body is too large, nested too deeply, or has a key twice";
    const QJsonDocument document =
        QJsonDocument::fromJson(QByteArray::fromRawData(bytes.data(), int(bytes.size())));
    *body = document.object();
    return document.isObject() ? QString() : "the body is no JSON object";
}

QString readFeedback(const QJsonObject& body, Feedback* feedback) {
    Fields fields(body, {"issueTypes", "issueDesc", "appName", "appVersion", "downUrl", "imgKeys",
                         "contactInfo", "hardwareInfo", "logFileKey"});
    const QStringList types = fields.texts("issueTypes", MaximumTypes, LabelLength);
    const QString description = fields.text("issueDesc", DescriptionLength);
    const QJsonObject hardware = hardwareFacts(fields.object("hardwareInfo"));
    feedback->record = QJsonObject{{"issueTypes", QJsonArray::fromStringList(types)},
                                   {"issueDesc", description},
                                   {"appName", fields.text("appName", LabelLength)},
                                   {"appVersion", fields.text("appVersion", LabelLength)},
                                   {"downUrl", fields.text("downUrl", UrlLength)},
                                   {"contactInfo", fields.text("contactInfo", LabelLength)},
                                   {"hardwareInfo", hardware}};
    feedback->imageKeys = fields.texts("imgKeys", MaximumImages, KeyLength);
    feedback->imageKeys.removeDuplicates();
    feedback->logKey = fields.text("logFileKey", KeyLength);
    if (types.isEmpty() && description.isEmpty())
        fields.refuse("issueTypes and issueDesc are empty");
    return fields.error();
}

QString readScore(const QJsonObject& body, Score* score) {
    Fields fields(body, {"appName", "appVersion", "score", "cfgFileKey"});
    score->appName = fields.text("appName", ScoredNameLength).simplified();
    score->appVersion = fields.text("appVersion", ScoredNameLength);
    score->fileKey = fields.text("cfgFileKey", KeyLength);
    const double number = body.value("score").toDouble();
    if (!(number >= 1 && number <= BestScore) || number != std::floor(number))
        fields.refuse("score is no whole number from 1 to 5");
    else
        score->score = int(number);
    if (score->appName.isEmpty())
        fields.refuse("appName is empty");
    return fields.error();
}

QString readUpload(const QJsonObject& body, UploadKind* kind) {
    static const QRegularExpression pictures("\\A(png|jpe?g|gif)\\z",
                                             QRegularExpression::CaseInsensitiveOption);
    Fields fields(body, {"from", "type", "fileSuffix"});
    const QString type = fields.text("type", KeyLength);
    const QString suffix = fields.text("fileSuffix", KeyLength);
    if (type != "image" && type != "attach")
        fields.refuse("type is neither image nor attach");
    else if (type == "image" && !pictures.match(suffix).hasMatch())
        fields.refuse("only pictures of the kinds png, jpg, jpeg and gif are taken");
    *kind = type == "image" ? UploadKind::Image : UploadKind::Archive;
    return fields.error();
}

}  // namespace ReportBodies

}  // namespace StoreServer
