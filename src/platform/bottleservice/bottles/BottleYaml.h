#pragma once

#include <yaml-cpp/yaml.h>

#include <QDateTime>
#include <QJsonObject>
#include <optional>

#include "bottleservice/settings/RegistryChange.h"

/// The content of one bottle.yml. Keys that the service does not know, and the order of all keys, survive a
/// change; comments do not. Wrong types of hand-edited values read as the empty value of their key and stay
/// in the file until that key is written. Movable only, since YAML nodes are shared by copies.
class BottleYaml {
public:
    /// Empty with a sentence in error when the text is no YAML mapping.
    static std::optional<BottleYaml> parse(const QByteArray& text, QString* error);

    /// The file of a new bottle.
    static BottleYaml fresh(const QString& name, const QString& runner, const QDateTime& now);

    BottleYaml(BottleYaml&&) = default;
    BottleYaml& operator=(BottleYaml&&) = default;
    BottleYaml(const BottleYaml&) = delete;
    BottleYaml& operator=(const BottleYaml&) = delete;

    QByteArray toText() const;

    /// The bottle as JSON: known keys always present in External_Programs, Parameters and the like with the
    /// type that readers expect, unknown keys as they are. "Path" is not set here.
    QJsonObject record() const;

    QString runner() const;
    /// The template that the bottle is a copy of; empty for one that was made in another way.
    QString templateKey() const;
    /// The records of the programs that were entered, by their ids.
    QJsonObject programs() const { return record().value("External_Programs").toObject(); }
    bool hasProgram(const QString& id) const;
    QJsonObject program(const QString& id) const;

    /// A change of the registry that was begun and not yet reported done.
    RegistryChange pendingRegistry() const;
    void setPendingRegistry(const RegistryChange& change);

    void set(const char* key, const QJsonValue& value);
    /// An entry of a mapping such as Parameters, which is made if it is missing.
    void setIn(const char* map, const QString& key, const QJsonValue& value);
    void removeFrom(const char* map, const QString& key);

    /// Writes the given keys of a program; keys of the file that are not in the record stay.
    void setProgram(const QString& id, const QJsonObject& record);
    bool removeProgram(const QString& id);

private:
    explicit BottleYaml(const YAML::Node& root) : m_root(root) {}
    YAML::Node valueOf(const char* key) const;
    YAML::Node mapping(const char* key);

    YAML::Node m_root;
};
