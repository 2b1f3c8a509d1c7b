#include "store/client/ServerConfiguration.h"

#include <QRegularExpression>
#include <stdexcept>

namespace OpenAPI {

ServerConfiguration::ServerConfiguration(const QString& url, const QString& description,
                                         const QMap<QString, ServerVariable>& variables)
    : m_url(url),
      m_description(description.isEmpty() ? QStringLiteral("No description provided") : description),
      m_variables(variables) {}

QString ServerConfiguration::URL() const {
    QString url = m_url;
    for (auto variable = m_variables.begin(); variable != m_variables.end(); ++variable) {
        const QString& value = variable->defaultValue;
        if (!variable->enumValues.isEmpty() && !variable->enumValues.contains(value))
            throw std::logic_error(QString("The variable %1 in the server URL has invalid value %2")
                                       .arg(variable.key(), value)
                                       .toStdString());
        const QRegularExpression place("\\{" + QRegularExpression::escape(variable.key()) + "\\}");
        url.replace(place, QString(value).replace('\\', QLatin1String("\\\\")));
    }
    return url;
}

}  // namespace OpenAPI
