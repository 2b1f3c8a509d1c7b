#include "bottleservice/bottles/Programs.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QLocale>
#include <QRegularExpression>

#include "bottleservice/bottles/WindowsPath.h"
#include "manifest/SettingRules.h"

namespace Programs {

namespace {

struct FieldType {
    const char* key;
    QJsonValue::Type type;
    const char* description;
};

const FieldType FieldTypes[] = {
    {"id", QJsonValue::String, "text"},
    {"name", QJsonValue::String, "text"},
    {"path", QJsonValue::String, "text"},
    {"folder", QJsonValue::String, "text"},
    {"icon", QJsonValue::String, "text"},
    {"arguments", QJsonValue::String, "text"},
    {"envs", QJsonValue::Object, "an object"},
    {"stars", QJsonValue::Double, "a number"},
    {"auto_discovered", QJsonValue::Bool, "true or false"},
    {"created_time", QJsonValue::String, "text"},
};

QString checkFields(const QJsonObject& record) {
    for (const FieldType& field : FieldTypes) {
        const QJsonValue value = record.value(QLatin1String(field.key));
        if (!value.isUndefined() && value.type() != field.type)
            return QString("\"%1\" of the program must be %2.").arg(field.key, field.description);
        if (value.isString() && value.toString().contains(QChar(0)))
            return QString("\"%1\" of the program contains a null character.").arg(field.key);
    }
    const QJsonObject envs = record.value("envs").toObject();
    for (auto it = envs.begin(); it != envs.end(); ++it) {
        if (!SettingRules::isVariableName(it.key()))
            return "\"envs\" of the program contains a name that no environment variable can have.";
        if (!it.value().isString() || it.value().toString().contains(QChar(0)))
            return QString("The value of \"%1\" in \"envs\" of the program must be text.").arg(it.key());
    }
    return {};
}

}  // namespace

bool isProgramId(const QString& id) {
    static const QRegularExpression uuid(
        "\\A[0-9a-fA-F]{8}-[0-9a-fA-F]{4}-[0-9a-fA-F]{4}-[0-9a-fA-F]{4}-[0-9a-fA-F]{12}\\z");
    return uuid.match(id).hasMatch();
}

QJsonObject parse(const QString& json, QString* error) {
    const QByteArray text = json.toUtf8();
    if (text.size() > MaximumRecordBytes) {
        *error = QString("The program's record is larger than %1 bytes.").arg(MaximumRecordBytes);
        return {};
    }
    QJsonParseError failure;
    const QJsonDocument document = QJsonDocument::fromJson(text, &failure);
    if (!document.isObject()) {
        *error = "The program's record is no JSON object.";
        if (failure.error != QJsonParseError::NoError)
            *error = QString("The program's record is no JSON object: %1.").arg(failure.errorString());
        return {};
    }
    const QJsonObject record = document.object();
    *error = checkFields(record);
    if (error->isEmpty() && !isProgramId(record.value("id").toString()))
        *error = "\"id\" of the program is no UUID.";
    return error->isEmpty() ? record : QJsonObject();
}

QJsonObject merged(const QJsonObject& old, const QJsonObject& given) {
    QJsonObject record = old;
    for (auto it = given.begin(); it != given.end(); ++it)
        record.insert(it.key(), it.value());
    record.remove("auto_discovered");
    return record;
}

QJsonObject completed(const QJsonObject& given, const QDateTime& now, QString* error) {
    const QString path = given.value("path").toString();
    if (path.isEmpty()) {
        *error = "The bottle has no program with this id, and a new one needs a path.";
        return {};
    }
    const QJsonObject defaults{{"name", QFileInfo(QString(path).replace('\\', '/')).completeBaseName()},
                               {"folder", folderOf(path)},
                               {"icon", ""},
                               {"arguments", ""},
                               {"envs", QJsonObject()},
                               {"stars", 0},
                               {"created_time", now.toString("yyyy-MM-dd hh:mm:ss")}};
    return merged(defaults, given);
}

QJsonObject summary(const QString& bottle, const QString& bottlePath, const QJsonObject& record) {
    const QString path = record.value("path").toString();
    const QFileInfo file(WindowsPath::toUnix(bottlePath, path));
    return {{"bottle_name", bottle},
            {"name", record.value("name").toString()},
            {"icon", record.value("icon").toString()},
            {"stars", record.value("stars").toDouble()},
            {"uuid", record.value("id").toString()},
            {"created_time", record.value("created_time").toString()},
            {"size", file.isFile() ? QLocale::c().formattedDataSize(file.size()) : QString()},
            {"path", path}};
}

QString folderOf(const QString& path) {
    const int end =
        qMax(path.lastIndexOf('/'), WindowsPath::isWindowsPath(path) ? path.lastIndexOf('\\') : -1);
    return path.left(qMax(end, 0));
}

}  // namespace Programs
