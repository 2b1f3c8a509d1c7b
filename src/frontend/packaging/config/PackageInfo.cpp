#include "packaging/config/PackageInfo.h"

#include <QJsonArray>

QStringList PackageInfo::categories() {
    return {"Internet", "Chat",    "Music",       "Video",  "Graphics", "Game",
            "Office",   "Reading", "Development", "System", "Other"};
}

QRegularExpression PackageInfo::typedPackageName() {
    return QRegularExpression(R"([a-z0-9]+(\.[a-z0-9]+)*)");
}

QRegularExpression PackageInfo::typedVersion() {
    return QRegularExpression(R"(\d[a-z0-9]*(\.[a-z0-9]+)*)");
}

// "\z" and not "$", which also matches before a line end.
QString PackageInfo::packageNameError(const QString& text) {
    static const QRegularExpression accepted(R"(^[a-z0-9]+(\.[a-z0-9]+)*\z)");
    if (text.size() < 2)
        return tr("At least 2 characters");
    return accepted.match(text).hasMatch() ? QString() : tr("Your input is not a valid package name");
}

QString PackageInfo::versionError(const QString& text) {
    static const QRegularExpression accepted(R"(^[0-9][a-zA-Z0-9]*(\.[a-zA-Z0-9]+)*\z)");
    return accepted.match(text).hasMatch() ? QString() : tr("Your input is not a valid package version");
}

PackageInfo PackageInfo::fromJson(const QJsonObject& object) {
    PackageInfo info;
    info.appName = object.value("appname").toString();
    info.packageName = object.value("pkgname").toString();
    info.version = object.value("pkgversion").toString();
    info.description = object.value("pkgdesc").toString();
    const QString category = object.value("category").toString();
    if (categories().contains(category))
        info.category = category;
    const QStringList known = info.architectures;
    info.architectures.clear();
    for (const QJsonValue& word : object.value("arch").toArray()) {
        if (known.contains(word.toString()) && !info.architectures.contains(word.toString()))
            info.architectures += word.toString();
    }
    if (info.architectures.isEmpty())
        info.architectures = known;
    return info;
}

QJsonObject PackageInfo::toJson() const {
    return {{"appname", appName},    {"pkgname", packageName},
            {"pkgversion", version}, {"pkgdesc", description},
            {"category", category},  {"arch", QJsonArray::fromStringList(architectures)}};
}
