#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <optional>

namespace Fenk {

/// The options of a settings store as a JSON text describes them:
/// {"groups":[{"key":"basic","groups":[{"key":"log","options":[{"key":"version","type":"text","default":""}]}]}]}
/// An option's full key joins the keys of its groups and its own by points; an option with an empty key
/// therefore ends in a point. Types are "text", "switch", "number" and "list" (of strings). "default" may be
/// missing.
class SettingsDescription {
public:
    enum class Type { Text, Switch, Number, List };

    struct Option {
        Type type = Type::Text;
        QVariant defaultValue;
    };

    /// Empty, with the reason in `error`, if the text is invalid.
    static std::optional<SettingsDescription> fromJson(const QByteArray& json, QString* error = nullptr);

    QStringList keys() const { return m_keys; }  ///< in the order of the description
    const Option* find(const QString& key) const;

    /// The value converted to the type, or an invalid QVariant.
    static QVariant converted(Type type, const QVariant& value);

    /// The value as text in the file, and back; fromText returns an invalid QVariant for invalid text.
    static QString toText(Type type, const QVariant& value);
    static QVariant fromText(Type type, const QString& text);

private:
    QStringList m_keys;
    QHash<QString, Option> m_options;
};

}  // namespace Fenk
