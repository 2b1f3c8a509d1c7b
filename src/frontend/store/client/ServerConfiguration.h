#pragma once

#include <QMap>
#include <QSet>
#include <QString>

namespace OpenAPI {

/// A variable of a server's address.
struct ServerVariable {
    QString description;
    QString defaultValue;
    QSet<QString> enumValues;  ///< what it may be; anything when empty
};

/// An address of the store, in which "{name}" stands for a variable.
class ServerConfiguration {
public:
    explicit ServerConfiguration(const QString& url = {}, const QString& description = {},
                                 const QMap<QString, ServerVariable>& variables = {});

    QString description() const { return m_description; }
    /// The address with its variables replaced by their values. Throws std::logic_error when a value is none
    /// of those allowed.
    QString URL() const;

private:
    QString m_url;
    QString m_description;
    QMap<QString, ServerVariable> m_variables;
};

}  // namespace OpenAPI
