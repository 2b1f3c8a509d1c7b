#include "bottleservice/backup/BackupList.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <cmath>

#include "bottleservice/backup/BackupLinks.h"
#include "bottleservice/backup/BackupPath.h"

namespace {

using Type = BackupEntry::Type;

constexpr double MaximumNumber = 9007199254740992.0;  // up to here JSON numbers are exact
constexpr qint64 MaximumSettingsBytes = 2 * 1024 * 1024;
constexpr int MaximumTextCharacters = 4096;
constexpr int MaximumNameCharacters = 1000;
const char Settings[] = "bottle.yml";
const char Program[] = "cellarix";

/// A whole number from 0; -1 for everything else.
qint64 numberOf(const QJsonValue& value) {
    const double number = value.toDouble(-1);
    return number >= 0 && number <= MaximumNumber && std::floor(number) == number ? qint64(number) : -1;
}

QJsonArray toArray(const QVector<QByteArray>& paths) {
    QJsonArray array;
    for (const QByteArray& path : paths)
        array += BackupPath::toText(path);
    return array;
}

QJsonObject toObject(const BackupEntry& entry) {
    QJsonObject object{{"path", BackupPath::toText(entry.path)}};
    if (entry.type == Type::Directory)
        object.insert("type", "directory");
    if (entry.type == Type::Link)
        object.insert("link", BackupPath::toText(entry.target));
    if (entry.type == Type::File) {
        object.insert("size", entry.size);
        object.insert("modified", entry.modifiedMs);
        object.insert("mode", entry.mode);
        if (entry.holes > 0)
            object.insert("holes", entry.holes);
    }
    if (!entry.attributes.isEmpty())
        object.insert("attributes", QString::fromLatin1(entry.attributes));
    return object;
}

/// Collects the places of a bottle one by one and refuses those that must not be there.
class Places {
public:
    /// Returns why there can be no such place, empty when there can.
    QString add(const QByteArray& path, Type type) {
        if (!BackupPath::isInside(path))
            return "a path leads out of the bottle";
        if (BackupPath::isPassedOver(path))
            return "it has a file that only the service may make";
        const QByteArray parent = BackupPath::parentOf(path);
        if (!parent.isEmpty() && m_types.value(parent, Type::File) != Type::Directory)
            return "a path has no directory";
        if (m_types.contains(path))
            return "a path is there twice";
        m_types.insert(path, type);
        // Files of Linux may differ in case alone. A link must not, since another name could lead through it.
        const QString folded = BackupPath::folded(path);
        const auto same = m_folded.constFind(folded);
        if (same != m_folded.constEnd() && (*same == Type::Link || type == Type::Link))
            return "two paths differ in case alone";
        m_folded.insert(folded, type);
        return {};
    }

private:
    QHash<QByteArray, Type> m_types;
    QHash<QString, Type> m_folded;
};

class Parser {
public:
    Parser(const QJsonObject& object, BackupList* list) : m_object(object), m_list(list) {}

    QString parse() {
        for (const auto& step :
             {&Parser::parseHead, &Parser::parseEntries, &Parser::parseNamed, &Parser::checkLinks}) {
            const QString fault = (this->*step)();
            if (!fault.isEmpty())
                return fault;
        }
        return {};
    }

private:
    QString text(const char* key) const {
        return m_object[QLatin1String(key)].toString().left(MaximumTextCharacters);
    }

    /// For the user's eyes only; more than fit are dropped.
    QStringList names(const char* key) const {
        QStringList all;
        for (const QJsonValue& name : m_object[QLatin1String(key)].toArray()) {
            if (all.size() == BackupList::MaximumNames)
                break;
            all += name.toString().left(MaximumNameCharacters);
        }
        return all;
    }

    QString parseHead() {
        if (text("program") != Program)
            return "it was made by another program";
        m_list->name = text("name");
        m_list->runner = text("runner");
        m_list->build = text("build");
        m_list->user = text("user");
        m_list->home = text("home");
        m_list->path = text("path");
        m_list->created = QDateTime::fromString(text("created"), Qt::ISODate);
        m_list->programs = names("programs");
        m_list->leftOut = names("leftOut");
        const bool isUser = m_list->user.isEmpty() ||
                            (BackupPath::isInside(m_list->user.toUtf8()) && !m_list->user.contains('/'));
        return isUser ? QString() : QString("the user has no name that can be used");
    }

    QString parseEntries() {
        const QJsonArray entries = m_object["entries"].toArray();
        if (entries.size() > BackupList::MaximumEntries)
            return "it has too many files";
        qint64 total = 0;
        bool hasSettings = false;
        bool hasDrive = false;
        m_list->entries.reserve(entries.size());
        for (const QJsonValue& value : entries) {
            BackupEntry entry;
            const QString fault = parseEntry(value.toObject(), &entry);
            if (!fault.isEmpty())
                return fault;
            total += entry.size;
            if (total > qint64(MaximumNumber))
                return "it is too large";
            hasSettings = hasSettings || (entry.path == Settings && entry.type == Type::File &&
                                          entry.size <= MaximumSettingsBytes);
            hasDrive = hasDrive || (entry.path == "drive_c" && entry.type == Type::Directory);
            m_list->entries += entry;
        }
        if (!hasDrive)
            return "it has no drive C";
        return hasSettings ? QString() : QString("it has no settings");
    }

    QString parseEntry(const QJsonObject& object, BackupEntry* entry) {
        static const QRegularExpression attributes("^0x[0-9a-f]{1,8}$");
        entry->path = BackupPath::fromText(object["path"].toString());
        entry->attributes = object["attributes"].toString().toLatin1();
        if (!entry->attributes.isEmpty() && !attributes.match(object["attributes"].toString()).hasMatch())
            return "a file has attributes that do not exist";
        if (object.contains("link")) {
            entry->type = Type::Link;
            entry->target = BackupPath::fromText(object["link"].toString());
            if (!BackupPath::staysInside(entry->path, entry->target))
                return "a link leads out of the bottle";
        } else if (object.contains("size")) {
            entry->size = numberOf(object["size"]);
            entry->modifiedMs = std::max<qint64>(numberOf(object["modified"]), 0);
            entry->mode = int(numberOf(object["mode"])) & 0755;
            entry->holes = object.contains("holes") ? numberOf(object["holes"]) : 0;
            if (entry->size < 0 || entry->holes < 0 || entry->holes > entry->size)
                return "a file has no size";
        } else if (object["type"] == "directory") {
            entry->type = Type::Directory;
        } else {
            return "an entry has no type";
        }
        return m_places.add(entry->path, entry->type);
    }

    QString parseNamed() {
        const QJsonArray wineFiles = m_object["wineFiles"].toArray();
        const QJsonArray links = m_object["standardLinks"].toArray();
        if (wineFiles.size() > BackupList::MaximumWineFiles || links.size() > BackupList::MaximumNames)
            return "it has too many files";
        const QString fault = parsePaths(wineFiles, &BackupPath::isWinePlace, Type::File, &m_list->wineFiles);
        return fault.isEmpty()
                   ? parsePaths(links, &BackupPath::isStandardLink, Type::Link, &m_list->standardLinks)
                   : fault;
    }

    QString checkLinks() {
        const BackupLinks links(*m_list);
        for (const BackupEntry& entry : m_list->entries) {
            if (entry.type == Type::Link && links.leadsOut(entry))
                return "a link leads out of the bottle over another one";
        }
        return {};
    }

    QString parsePaths(const QJsonArray& texts, bool (*isAllowed)(const QByteArray&), Type type,
                       QVector<QByteArray>* paths) {
        for (const QJsonValue& value : texts) {
            const QByteArray path = BackupPath::fromText(value.toString());
            const QString fault = m_places.add(path, type);
            if (!fault.isEmpty())
                return fault;
            if (!isAllowed(path))
                return "a file is not where Wine has it";
            *paths += path;
        }
        return {};
    }

    const QJsonObject m_object;
    BackupList* m_list;
    Places m_places;
};

}  // namespace

const char BackupList::NewerFormat[] = "it was made by a newer version of this program";

qint64 BackupList::bytes() const {
    qint64 total = 0;
    for (const BackupEntry& entry : entries)
        total += entry.size;
    return total;
}

qint64 BackupList::writtenBytes() const {
    qint64 total = 0;
    for (const BackupEntry& entry : entries)
        total += entry.size - entry.holes;
    return total;
}

QByteArray BackupList::toJson() const {
    QJsonArray all;
    for (const BackupEntry& entry : entries)
        all += toObject(entry);
    const QJsonObject object{{"format", Format},
                             {"program", Program},
                             {"name", name},
                             {"runner", runner},
                             {"build", build},
                             {"user", user},
                             {"home", home},
                             {"path", path},
                             {"created", created.toString(Qt::ISODate)},
                             {"bytes", bytes()},
                             {"programs", QJsonArray::fromStringList(programs)},
                             {"entries", all},
                             {"wineFiles", toArray(wineFiles)},
                             {"standardLinks", toArray(standardLinks)},
                             {"leftOut", QJsonArray::fromStringList(leftOut)}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<BackupList> BackupList::parse(const QByteArray& text, QString* error) {
    const QJsonDocument document = QJsonDocument::fromJson(text);
    const qint64 format = numberOf(document.object()["format"]);
    if (text.size() > MaximumBytes || format < 1) {
        *error = "its list of files cannot be read";
        return std::nullopt;
    }
    if (format > Format) {
        *error = NewerFormat;
        return std::nullopt;
    }
    BackupList list;
    *error = Parser(document.object(), &list).parse();
    if (!error->isEmpty())
        return std::nullopt;
    return list;
}
