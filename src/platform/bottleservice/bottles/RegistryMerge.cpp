#include "bottleservice/bottles/RegistryMerge.h"

#include <QDebug>
#include <QHash>
#include <QVector>

#include "bottleservice/files/AtomicFile.h"
#include "fenk/system/RegularFile.h"

namespace RegistryMerge {

namespace {

constexpr qint64 MaximumBytes = 64 * 1024 * 1024;
const char Magic[] = "WINE REGISTRY Version 2";
/// Keys of hardware, which Wine writes at each start.
const char* const StartKeys[] = {"system\\\\currentcontrolset\\\\enum\\\\",
                                 "system\\\\currentcontrolset\\\\control\\\\class\\\\",
                                 "system\\\\currentcontrolset\\\\control\\\\video\\\\", "hardware\\\\"};
const char MachineId[] = "\"machineguid\"";

struct Value {
    QByteArray name;  ///< as it is written, with quotes, in lower case; "@" for the default value
    QByteArray text;  ///< all of its lines
};

struct Key {
    QByteArray path;  ///< as it is written, in lower case
    QByteArray head;  ///< the line with the path and those with properties of the key
    QVector<Value> values;

    const Value* find(const QByteArray& name) const {
        for (const Value& value : values) {
            if (value.name == name)
                return &value;
        }
        return nullptr;
    }
};

struct Registry {
    QByteArray head;
    QByteArray architecture;
    QVector<Key> keys;
    QHash<QByteArray, int> places;  ///< of keys, by path

    const Key* find(const QByteArray& path) const {
        const auto place = places.constFind(path);
        return place == places.constEnd() ? nullptr : &keys[*place];
    }
};

/// The position of the first such character that is not escaped by a backslash; -1 if there is none.
int indexOfPlain(const QByteArray& line, char letter, int from) {
    for (int i = from; i < line.size(); ++i) {
        if (line[i] == '\\')
            ++i;
        else if (line[i] == letter)
            return i;
    }
    return -1;
}

QByteArray nameOf(const QByteArray& line) {
    if (line.startsWith('@'))
        return "@";
    const int end = indexOfPlain(line, '"', 1);
    return line.startsWith('"') && end > 0 ? line.left(end + 1).toLower() : QByteArray();
}

Registry parse(const QByteArray& text) {
    Registry registry;
    bool isContinued = false;
    for (int begin = 0; begin < text.size();) {
        const int end = text.indexOf('\n', begin);
        const QByteArray line = text.mid(begin, end < 0 ? -1 : end + 1 - begin);
        begin += line.size();
        const QByteArray bare = line.trimmed();
        Key* key = registry.keys.isEmpty() ? nullptr : &registry.keys.last();
        if (std::exchange(isContinued, false)) {
            key->values.last().text += line;
            isContinued = bare.endsWith('\\');
        } else if (line.startsWith('[')) {
            const QByteArray path = line.mid(1, qMax(indexOfPlain(line, ']', 1) - 1, 0)).toLower();
            registry.places.insert(path, registry.keys.size());
            registry.keys.append({path, line, {}});
        } else if (!key) {
            registry.head += line;
            if (line.startsWith("#arch="))
                registry.architecture = bare;
        } else if (const QByteArray name = nameOf(line); !name.isEmpty()) {
            key->values.append({name, line});
            isContinued = bare.endsWith('\\');
        } else if (!bare.isEmpty()) {
            key->head += line;
        }
    }
    return registry;
}

QByteArray textOf(const Registry& registry) {
    QByteArray text = registry.head;
    for (const Key& key : registry.keys) {
        text += key.head;
        for (const Value& value : key.values)
            text += value.text;
        text += '\n';
    }
    return text;
}

bool isOfEachStart(const QByteArray& path) {
    for (const char* start : StartKeys) {
        if (path.startsWith(start))
            return true;
    }
    return false;
}

bool mergeKey(Key* own, const Key* before, const Key& now) {
    bool isChanged = false;
    for (const Value& value : now.values) {
        const Value* old = before ? before->find(value.name) : nullptr;
        auto* present = const_cast<Value*>(own->find(value.name));
        if (value.name == MachineId || (present && present->text == value.text))
            continue;
        if (!present && !old)
            own->values.append(value);
        else if (present && old && present->text == old->text)
            present->text = value.text;
        else
            continue;
        isChanged = true;
    }
    return isChanged;
}

}  // namespace

QByteArray merged(const QByteArray& own, const QByteArray& oldTemplate, const QByteArray& newTemplate) {
    Registry registry = parse(own);
    const Registry before = parse(oldTemplate);
    const Registry now = parse(newTemplate);
    if (!own.startsWith(Magic) || !newTemplate.startsWith(Magic) || registry.architecture != now.architecture)
        return own;
    bool isChanged = false;
    for (const Key& key : now.keys) {
        if (isOfEachStart(key.path))
            continue;
        const Key* old = before.find(key.path);
        const auto place = registry.places.constFind(key.path);
        if (place != registry.places.constEnd()) {
            isChanged = mergeKey(&registry.keys[*place], old, key) || isChanged;
        } else if (!old) {
            registry.keys.append(key);
            isChanged = true;
        }
    }
    return isChanged ? textOf(registry) : own;
}

QString update(const QString& prefix, const QString& oldTemplate, const QString& newTemplate) {
    for (const char* file : {"/system.reg", "/user.reg", "/userdef.reg"}) {
        const auto own = Fenk::RegularFile::read(prefix + file, MaximumBytes);
        const auto now = Fenk::RegularFile::read(newTemplate + file, MaximumBytes);
        if (!own || !now)
            continue;
        const QByteArray before =
            Fenk::RegularFile::read(oldTemplate + file, MaximumBytes).value_or(QByteArray());
        if (own->size() > MaximumBytes || now->size() > MaximumBytes || before.size() > MaximumBytes) {
            qWarning() << prefix + file << "is too large to be brought up to another Wine";
            continue;
        }
        const QByteArray result = merged(*own, before, *now);
        QString error;
        if (result != *own && !AtomicFile::replace(prefix + file, result, &error))
            return error;
    }
    return {};
}

}  // namespace RegistryMerge
