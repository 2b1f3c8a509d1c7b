#include "bottleservice/components/OfflineList.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include "bottleservice/components/Sources.h"

namespace {

const QLatin1String Format("cellarix-components");
constexpr int Version = 1;

std::optional<OfflineList::File> fileOf(const QJsonObject& entry) {
    static const QRegularExpression checksum("\\A[0-9A-Fa-f]{64}\\z");
    const double size = entry["size"].toDouble(-1);
    const QString sha256 = entry["sha256"].toString();
    if (!(size >= 0 && size <= double(Source::MaximumBytes)) || size != double(qint64(size)) ||
        !checksum.match(sha256).hasMatch())
        return std::nullopt;
    return OfflineList::File{qint64(size), sha256.toLower().toLatin1()};
}

const char* readFiles(const QJsonObject& entries, OfflineList* list) {
    if (entries.size() > OfflineList::MaximumFiles)
        return "its list has too many files";
    for (auto it = entries.begin(); it != entries.end(); ++it) {
        const auto file = fileOf(it.value().toObject());
        if (!Sources::isPlainName(it.key()) || !file)
            return "its list has a file with an impossible name, size or checksum";
        list->files.insert(it.key(), *file);
    }
    return nullptr;
}

const char* readComponents(const QJsonObject& entries, OfflineList* list) {
    if (entries.isEmpty() || entries.size() > OfflineList::MaximumComponents)
        return "its list has no components, or too many";
    for (auto it = entries.begin(); it != entries.end(); ++it) {
        if (!Sources::isPlainName(it.key()) || !it.value().isArray())
            return "its list has a component with an impossible name";
        QStringList files;
        for (const QJsonValue& file : it.value().toArray()) {
            if (!list->files.contains(file.toString()))
                return "its list has a component with a file that is not listed";
            files += file.toString();
        }
        files.removeDuplicates();
        list->components.insert(it.key(), files);
    }
    return nullptr;
}

}  // namespace

std::optional<OfflineList> OfflineList::parse(const QByteArray& text, QString* fault) {
    const QJsonObject content =
        text.size() <= MaximumBytes ? QJsonDocument::fromJson(text).object() : QJsonObject();
    if (content["format"].toString() != Format) {
        *fault = "it has no list of components";
        return std::nullopt;
    }
    if (content["version"].toInt() != Version) {
        *fault = "it was made by a newer version";
        return std::nullopt;
    }
    OfflineList list;
    const char* bad = readFiles(content["files"].toObject(), &list);
    if (!bad)
        bad = readComponents(content["components"].toObject(), &list);
    *fault = bad;
    return bad ? std::nullopt : std::optional(list);
}

QByteArray OfflineList::toJson() const {
    QJsonObject ofComponents, ofFiles;
    for (auto it = components.begin(); it != components.end(); ++it)
        ofComponents.insert(it.key(), QJsonArray::fromStringList(it.value()));
    for (auto it = files.begin(); it != files.end(); ++it)
        ofFiles.insert(it.key(), QJsonObject{{"size", double(it->size)}, {"sha256", QString(it->sha256)}});
    return QJsonDocument(QJsonObject{{"format", Format},
                                     {"version", Version},
                                     {"components", ofComponents},
                                     {"files", ofFiles}})
        .toJson();
}

qint64 OfflineList::bytes() const {
    qint64 sum = 0;
    for (const File& file : files)
        sum += file.size;
    return sum;
}
