#include "packaging/config/PackageInfo.h"

#include <QJsonArray>

namespace {
const char* const Categories[] = {
    QT_TRANSLATE_NOOP("AppConfigDialog", "Internet"),    QT_TRANSLATE_NOOP("AppConfigDialog", "Chat"),
    QT_TRANSLATE_NOOP("AppConfigDialog", "Music"),       QT_TRANSLATE_NOOP("AppConfigDialog", "Video"),
    QT_TRANSLATE_NOOP("AppConfigDialog", "Graphics"),    QT_TRANSLATE_NOOP("AppConfigDialog", "Game"),
    QT_TRANSLATE_NOOP("AppConfigDialog", "Office"),      QT_TRANSLATE_NOOP("AppConfigDialog", "Reading"),
    QT_TRANSLATE_NOOP("AppConfigDialog", "Development"), QT_TRANSLATE_NOOP("AppConfigDialog", "System"),
    QT_TRANSLATE_NOOP("AppConfigDialog", "Other")};
}

QStringList PackageInfo::categories() {
    return QStringList(std::begin(Categories), std::end(Categories));
}

QString PackageInfo::categoryText(const QString& word) {
    return tr(word.toUtf8().constData());
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

QString PackageInfo::packageNameWarning(const QString& text) {
    if (text.contains('.') || !packageNameError(text).isEmpty())
        return {};
    return tr(
        "A name without a dot may be that of a package of the system, which would be replaced. A name such "
        "as "
        "com.example.program is safe.");
}

QString PackageInfo::fileNameError() const {
    const QString architecture = architectures.size() == 1 ? architectures.first() : QString("all");
    const QString file = packageName + '_' + version + '_' + architecture + ".deb";
    return file.toUtf8().size() <= MaximumFileName ? QString()
                                                   : tr("Package name and version are too long together");
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
