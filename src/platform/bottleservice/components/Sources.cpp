#include "bottleservice/components/Sources.h"

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QUrl>
#include <algorithm>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/components/ChosenFile.h"
#include "bottleservice/components/ComponentStore.h"
#include "bottleservice/components/FileSizes.h"
#include "fenk/system/RegularFile.h"
#include "manifest/SettingRules.h"

namespace {

constexpr qint64 MaximumBytes = 4 * 1024 * 1024;

void reject(const QString& path, const QString& entry, const char* why) {
    qWarning() << path << "has a bad entry" << BottleName::shown(entry) << why;
}

bool isAddress(const QJsonValue& value) {
    static const QRegularExpression pattern("\\A((https?|file)://\\S+|/[^\\x00-\\x1f]+)\\z");
    return pattern.match(value.toString()).hasMatch();
}

/// Returns what is wrong with the entry of a file, or null.
const char* faultOf(const QString& name, const QJsonObject& entry) {
    static const QRegularExpression checksum("\\A[0-9A-Fa-f]{64}\\z");
    if (!Sources::isPlainName(name))
        return "is no name of a file";
    const QJsonArray addresses = entry["addresses"].toArray();
    if (entry.isEmpty() || !std::all_of(addresses.begin(), addresses.end(), isAddress))
        return "is empty or has an address that is none";
    if (entry.contains("sha256") && !checksum.match(entry["sha256"].toString()).hasMatch())
        return "has a checksum that is none";
    const double size = entry["size"].toDouble(-1);
    if (entry.contains("size") && !(size > 0 && size <= double(Source::MaximumBytes)))
        return "has an impossible size";
    return nullptr;
}

}  // namespace

Sources::Sources(const QString& catalogueDir, const QString& dataDir) {
    add(catalogueDir + "/sources.json");
    add(dataDir + "/sources.json");
    m_chosen = ChosenFile::remembered(dataDir);
    m_sizes = FileSizes::remembered(dataDir);
}

QString Source::shownAddress(const QString& address) {
    return address.startsWith('/') ? address : QUrl(address).toString(QUrl::RemoveUserInfo).left(300);
}

void Sources::add(const QString& path) {
    if (!QFile::exists(path))
        return;
    const QByteArray text = Fenk::RegularFile::read(path, MaximumBytes).value_or(QByteArray());
    QJsonParseError error;
    const QJsonObject content = QJsonDocument::fromJson(text, &error).object();
    if (error.error != QJsonParseError::NoError)
        qWarning() << path << "cannot be used:" << error.errorString();
    const QJsonObject files = content["files"].toObject();
    for (auto it = files.begin(); it != files.end(); ++it) {
        if (const char* fault = faultOf(it.key(), it.value().toObject()))
            reject(path, it.key(), fault);
        else
            m_files.insert(it.key(), it.value());
    }
    addArchives(path, content["archives"].toObject());
    QStringList mirrors;
    for (const QJsonValue& mirror : content["mirrors"].toArray()) {
        if (isAddress(mirror))
            mirrors += mirror.toString();
        else
            reject(path, mirror.toString(), "is no mirror");
    }
    m_mirrors = mirrors + m_mirrors;
    if (content.contains("allow_unverified"))
        m_allowUnverified = content["allow_unverified"].toBool();
}

void Sources::addArchives(const QString& path, const QJsonObject& archives) {
    for (auto kind = archives.begin(); kind != archives.end(); ++kind) {
        if (!ComponentStore::kinds().contains(kind.key())) {
            reject(path, kind.key(), "is no kind of component");
            continue;
        }
        QJsonObject ofKind = m_archives[kind.key()].toObject();
        const QJsonObject components = kind.value().toObject();
        for (auto it = components.begin(); it != components.end(); ++it) {
            if (isPlainName(it.key()) && isPlainName(it.value().toString()))
                ofKind.insert(it.key(), it.value());
            else
                reject(path, it.key(), "is no component with an archive");
        }
        m_archives.insert(kind.key(), ofKind);
    }
}

bool Sources::isPlainName(const QString& name) {
    return SettingRules::isPlainName(name);
}

Source Sources::find(const QString& file) const {
    Source source;
    source.file = file;
    if (!isPlainName(file))
        return source;
    for (const QString& mirror : m_mirrors)
        source.addresses += mirror + '/' + file;
    const QJsonObject entry = m_files[file].toObject();
    for (const QJsonValue& address : entry["addresses"].toArray())
        source.addresses += address.toString();
    source.size = qint64(entry["size"].toDouble(-1));
    source.sha256 = entry["sha256"].toString().toLower().toLatin1();
    const QByteArray chosen = m_chosen[file].toString().toLatin1();
    if (source.sha256.isEmpty() && !chosen.isEmpty()) {
        source.sha256 = chosen;
        source.isChosen = true;
    }
    const double fetched = m_sizes[QString::fromLatin1(source.sha256)].toDouble();
    if (source.size < 0 && fetched > 0 && fetched <= double(Source::MaximumBytes))
        source.size = qint64(fetched);
    return source;
}

QString Sources::archiveOf(const QString& kind, const QString& component) const {
    return m_archives[kind].toObject()[component].toString();
}

QStringList Sources::components(const QString& kind) const {
    QStringList names;
    for (const QString& name : m_archives[kind].toObject().keys()) {
        if (refusal(kind, name).isEmpty())
            names += name;
    }
    return names;
}

Reason Sources::refusal(const Source& source) const {
    if (source.isChosen)
        return {};
    if (source.addresses.isEmpty())
        return Reason(Reason::NoAddress, {source.file.left(200)});
    if (source.sha256.isEmpty() && !m_allowUnverified)
        return Reason(Reason::NoChecksum, {source.file});
    return {};
}

Reason Sources::refusal(const QString& kind, const QString& component) const {
    const QString file = archiveOf(kind, component);
    return file.isEmpty() ? Reason(Reason::NoComponent, {BottleName::shown(component)}) : refusal(find(file));
}
