#pragma once

#include <QMap>
#include <QSet>
#include <QStringList>
#include <functional>
#include <optional>
#include <stdexcept>

#include "manifest/YamlTree.h"

/// The one exception of the reader: a sentence that refuses the manifest. Does not leave ManifestReader.
struct ManifestRefusal : std::runtime_error {
    explicit ManifestRefusal(const QString& sentence) : std::runtime_error(sentence.toStdString()) {}
};

/// One map of a manifest while it is read. Each function reads a key and refuses a value of the wrong type or
/// size by throwing ManifestRefusal; a key that is missing or null reads as not given. finish() refuses the
/// keys that were not asked for.
class ManifestSection {
public:
    enum class Lines { One, Many };  ///< whether line feeds and tabs are allowed in a text

    /// `title` is the name in error texts, such as "Bottle" or "an entry of Files".
    ManifestSection(const YamlTree& map, const QString& title);

    bool has(const char* key);
    /// Whether the key stands there, also with null.
    bool isWritten(const char* key) const;
    /// The value of a key, for what the functions below do not cover; null when it is not given.
    const YamlTree* find(const char* key);

    QString text(const char* key, int maximum, Lines lines = Lines::One);
    QString requiredText(const char* key, int maximum);
    std::optional<qint64> number(const char* key, qint64 minimum, qint64 maximum);
    std::optional<bool> flag(const char* key);
    QStringList texts(const char* key, int maximumItems, int maximum, Lines lines = Lines::One);

    using TextCheck = std::function<bool(const QString& name, const QString& value)>;
    /// A map of texts whose names and values the check accepts; `expected` says what they must be.
    QMap<QString, QString> textMap(const char* key, int maximumItems, int maximum, const QString& expected,
                                   const TextCheck& check);
    /// Calls `read` for the map under a key.
    void map(const char* key, const std::function<void(ManifestSection&)>& read);
    /// Calls `read` for each map of the list under a key, and finish() after it.
    void maps(const char* key, int maximumItems, const std::function<void(ManifestSection&)>& read);

    void finish() const;

    /// Refuses the value of a key: "must be ...", "is ...".
    [[noreturn]] void refuse(const char* key, const QString& fault);
    [[noreturn]] void refuseMissing(const char* key) const;

private:
    QString textOf(const YamlTree& node, const char* key, int maximum, Lines lines);
    [[noreturn]] void refuse(const YamlTree& node, const char* key, const QString& fault) const;

    const YamlTree& m_map;
    QString m_title;
    QSet<QString> m_asked;
};
