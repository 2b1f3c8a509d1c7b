#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <memory>
#include <optional>

#include "bottleservice/settings/RegistryChange.h"

namespace YAML {
class Node;
}

/// The content of a bottle.yml. Unknown keys and the order of keys survive a change; comments do not. A value
/// of the wrong type reads as the empty value of its key and stays in the file until that key is written.
/// Movable only, since copies of YAML nodes share their content.
class BottleYaml {
public:
    /// Nothing, with an error text, when the text is no YAML mapping.
    static std::optional<BottleYaml> parse(const QByteArray& text, QString* error);

    /// The file of a new bottle.
    static BottleYaml fresh(const QString& name, const QString& runner, const QDateTime& now);

    BottleYaml(BottleYaml&& other) noexcept;
    BottleYaml& operator=(BottleYaml&& other) noexcept;
    ~BottleYaml();

    QByteArray toText() const;

    /// The bottle as JSON. Known keys are always present with the type that readers expect; unknown keys are
    /// as they are. "Path" is not set here.
    QJsonObject record() const;

    QString runner() const;
    /// The key of the template that the bottle was copied from; empty when it was made in another way.
    QString templateKey() const;
    /// The records of the programs that were entered, by their ids.
    QJsonObject programs() const { return record().value("External_Programs").toObject(); }
    bool hasProgram(const QString& id) const;
    QJsonObject program(const QString& id) const;

    /// A registry change that was begun and is not known to be done.
    RegistryChange pendingRegistry() const;
    void setPendingRegistry(const RegistryChange& change);

    void set(const char* key, const QJsonValue& value);
    /// Sets an entry of a mapping such as "Parameters", which is made if it is missing.
    void setIn(const char* map, const QString& key, const QJsonValue& value);

    /// Wine knows one override for a module and one replacement for a font, whatever the case of the name;
    /// these replace or remove every entry that means the same.
    void setOverride(const QString& dll, const QString& method);
    void removeOverride(const QString& dll);
    void setFontReplacement(const QString& font, const QString& replacement);
    void removeFontReplacement(const QString& font);

    /// Writes the given keys of a program; its other keys stay in the file.
    void setProgram(const QString& id, const QJsonObject& record);
    bool removeProgram(const QString& id);

private:
    explicit BottleYaml(const YAML::Node& root);
    YAML::Node valueOf(const char* key) const;
    YAML::Node mapping(const char* key);
    using Meaning = QString (*)(const QString& key);
    /// All but the one that is written in this way.
    void removeSame(const char* map, const QString& key, Meaning meaning);
    void remove(const char* map, const QString& key);

    std::unique_ptr<YAML::Node> m_root;  ///< null only after a move
};
