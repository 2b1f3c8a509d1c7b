#include "fenk/system/SystemInfo.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>

namespace Fenk {
namespace {

constexpr qint64 MaxBytes = 64 * 1024;

/// The value of a quoted or unquoted text as in a shell.
QString unquoted(const QString& text) {
    if (text.size() < 2 || (text.at(0) != '"' && text.at(0) != '\'') ||
        text.at(0) != text.at(text.size() - 1))
        return text;
    const QString inner = text.mid(1, text.size() - 2);
    if (text.at(0) == '\'')
        return inner;
    QString value;
    for (int i = 0; i < inner.size(); ++i) {
        if (inner.at(i) == '\\' && i + 1 < inner.size())
            ++i;
        value += inner.at(i);
    }
    return value;
}

/// Reads key=value lines and ignores all others. Of equal keys the first one counts.
QHash<QString, QString> readFields(const QString& path) {
    QHash<QString, QString> fields;
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return fields;
    const QStringList lines = QString::fromUtf8(file.read(MaxBytes)).split('\n');
    for (const QString& line : lines) {
        const int equals = line.indexOf('=');
        const QString key = line.left(qMax(0, equals)).trimmed();
        if (!key.isEmpty() && !key.startsWith('#') && !fields.contains(key))
            fields.insert(key, unquoted(line.mid(equals + 1).trimmed()));
    }
    return fields;
}

}  // namespace

SystemInfo::SystemInfo(const QString& osVersionFile, const QString& osReleaseFile) {
    const QHash<QString, QString> version = readFields(osVersionFile);
    const QHash<QString, QString> release = readFields(osReleaseFile);
    const auto pick = [&](const QString& own, const QString& common) {
        return version.value(own).isEmpty() ? common : version.value(own);
    };
    const QString id = release.value("VERSION_ID");
    m_productType = pick("ProductType", release.value("ID"));
    m_systemName = pick("SystemName", release.value("NAME"));
    m_editionName = pick("EditionName", release.value("VERSION_CODENAME"));
    m_majorVersion = pick("MajorVersion", id.section('.', 0, 0));
    m_minorVersion = pick("MinorVersion", id.section('.', 1));
    m_osBuild = pick("OsBuild", release.value("BUILD_ID"));
}

int SystemInfo::editionType() const {
    static const QHash<QString, int> types{{"Professional", 1}, {"Home", 2}, {"Community", 3}, {"E", 10}};
    return types.value(m_editionName);
}

}  // namespace Fenk
