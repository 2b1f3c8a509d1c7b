#include "backend/ProgramRecord.h"

#include <QJsonDocument>

namespace ProgramRecord {

QString id(const QJsonObject& record) {
    return record.value("id").toString();
}
QString name(const QJsonObject& record) {
    return record.value("name").toString();
}
QString path(const QJsonObject& record) {
    return record.value("path").toString();
}
QString folder(const QJsonObject& record) {
    return record.value("folder").toString();
}
QString icon(const QJsonObject& record) {
    return record.value("icon").toString();
}
QString arguments(const QJsonObject& record) {
    return record.value("arguments").toString();
}
QJsonObject envs(const QJsonObject& record) {
    return record.value("envs").toObject();
}
int stars(const QJsonObject& record) {
    return qRound(record.value("stars").toDouble());
}
bool autoDiscovered(const QJsonObject& record) {
    return record.value("auto_discovered").toBool();
}
QString iconFallback() {
    return QStringLiteral("cxb_app_default_icon");
}

QJsonObject minimal(const QString& id, const QString& name, const QString& path) {
    return {{"id", id}, {"name", name}, {"path", path}};
}

QJsonObject adopted(QJsonObject record) {
    record.remove("auto_discovered");
    return record;
}

QString toText(const QJsonObject& record) {
    return QString::fromUtf8(QJsonDocument(record).toJson(QJsonDocument::Compact));
}

QJsonObject fromText(const QString& text) {
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

}  // namespace ProgramRecord
