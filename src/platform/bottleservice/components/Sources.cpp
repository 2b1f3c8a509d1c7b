#include "bottleservice/components/Sources.h"

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include "bottleservice/bottles/PlainFile.h"

namespace {

constexpr qint64 MaximumBytes = 4 * 1024 * 1024;

void merge(QJsonObject* into, const QJsonObject& other) {
    for (auto it = other.begin(); it != other.end(); ++it)
        into->insert(it.key(), it.value());
}

}  // namespace

Sources::Sources(const QString& catalogueDir, const QString& dataDir) {
    add(catalogueDir + "/sources.json");
    add(dataDir + "/sources.json");
}

void Sources::add(const QString& path) {
    if (!QFile::exists(path))
        return;
    const QByteArray text = PlainFile::read(path, MaximumBytes).value_or(QByteArray());
    QJsonParseError error;
    const QJsonObject content = QJsonDocument::fromJson(text, &error).object();
    if (error.error != QJsonParseError::NoError)
        qWarning() << path << "cannot be used:" << error.errorString();
    merge(&m_files, content["files"].toObject());
    const QJsonObject archives = content["archives"].toObject();
    for (auto it = archives.begin(); it != archives.end(); ++it) {
        QJsonObject ofKind = m_archives[it.key()].toObject();
        merge(&ofKind, it.value().toObject());
        m_archives.insert(it.key(), ofKind);
    }
    QStringList mirrors;
    for (const QJsonValue& mirror : content["mirrors"].toArray())
        mirrors += mirror.toString();
    m_mirrors = mirrors + m_mirrors;
    if (content.contains("allow_unverified"))
        m_allowUnverified = content["allow_unverified"].toBool();
}

bool Sources::isPlainName(const QString& name) {
    static const QRegularExpression pattern("\\A[A-Za-z0-9_][A-Za-z0-9_.+() -]{0,199}\\z");
    return pattern.match(name).hasMatch();
}

Source Sources::find(const QString& file) const {
    static const QRegularExpression checksum("\\A[0-9a-f]{64}\\z");
    Source source;
    source.file = file;
    if (!isPlainName(file))
        return source;
    for (const QString& mirror : m_mirrors) {
        if (!mirror.isEmpty())
            source.addresses += mirror + '/' + file;
    }
    const QJsonObject entry = m_files[file].toObject();
    for (const QJsonValue& address : entry["addresses"].toArray())
        source.addresses += address.toString();
    const double size = entry["size"].toDouble(-1);
    if (size >= 0 && size <= double(Source::MaximumBytes))
        source.size = qint64(size);
    const QString sha256 = entry["sha256"].toString().toLower();
    if (checksum.match(sha256).hasMatch())
        source.sha256 = sha256.toLatin1();
    return source;
}

QString Sources::archiveOf(const QString& kind, const QString& component) const {
    return m_archives[kind].toObject()[component].toString();
}

QStringList Sources::components(const QString& kind) const {
    QStringList names;
    for (const QString& name : m_archives[kind].toObject().keys()) {
        if (isPlainName(name))
            names += name;
    }
    return names;
}

QString Sources::refusal(const Source& source) const {
    if (source.addresses.isEmpty())
        return QString("It is not known where %1 can be had.").arg(source.file.left(200));
    if (source.sha256.isEmpty() && !m_allowUnverified)
        return QString("No checksum of %1 is known, and sources.json does not allow files without one.")
            .arg(source.file);
    return {};
}
