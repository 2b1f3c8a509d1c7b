#include "store/client/VeskClientParameters.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>
#include <algorithm>

namespace OpenAPI {
namespace VeskClientParameters {

namespace {

struct Style {
    const char* name;
    const char* prefix;
    const char* suffix;
    const char* delimiter;        ///< %1 is the parameter's name
    const char* unitedDelimiter;  ///< between values that share one name
};

constexpr Style Styles[] = {
    {"matrix", ";", "=", ";%1=", ","},
    {"label", ".", "", ".", ","},
    {"form", "&", "=", "&%1=", ","},
    {"simple", "", "", ",", ","},
    {"spaceDelimited", "&", "=", "&%1=", " "},
    {"pipeDelimited", "&", "=", "&%1=", "|"},
    {"deepObject", "none", "none", "&", "none"},
};
constexpr Style NoStyle = {"", "none", "none", "none", "none"};

const Style& styleOf(const QString& name) {
    const QString wanted = name.isEmpty() ? QStringLiteral("form") : name;
    const auto found = std::find_if(std::begin(Styles), std::end(Styles),
                                    [&](const Style& style) { return wanted == QLatin1String(style.name); });
    return found == std::end(Styles) ? NoStyle : *found;
}

QString encoded(const QString& text) {
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

QString textOf(const QJsonValue& value) {
    switch (value.type()) {
        case QJsonValue::Bool:
            return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
        case QJsonValue::Double:
            return QString::number(value.toDouble());
        case QJsonValue::Array:
            return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
        case QJsonValue::Object:
            return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
        default:
            return value.toString();
    }
}

void addSeparator(QString* url, const Style& style) {
    const bool isDeep = style.prefix == QLatin1String("none");
    url->append(!url->contains('?') ? "?" : isDeep ? "&" : style.prefix);
}

}  // namespace

QString stylePrefix(const QString& style) {
    return styleOf(style).prefix;
}

QString styleSuffix(const QString& style) {
    return styleOf(style).suffix;
}

QString styleDelimiter(const QString& style, const QString& name, bool isExplode) {
    const Style& found = styleOf(style);
    return QString(isExplode ? found.delimiter : found.unitedDelimiter).replace("%1", name);
}

void setPathParameter(QString* path, const QString& name, const QString& value, const QString& style) {
    path->replace('{' + name + '}', stylePrefix(style) + encoded(value));
}

void addQueryParameter(QString* url, const QString& name, const QString& value, const QString& style) {
    addSeparator(url, styleOf(style));
    url->append(encoded(name) + '=' + encoded(value));
}

void addQueryParameter(QString* url, const QString& name, const QJsonObject& value, const QString& style) {
    const bool isDeep = style == QLatin1String("deepObject");
    for (auto field = value.begin(); field != value.end(); ++field) {
        addSeparator(url, styleOf(style));
        const QString key = encoded(field.key());
        url->append((isDeep ? encoded(name) + '[' + key + ']' : key) + '=' + encoded(textOf(field.value())));
    }
}

}  // namespace VeskClientParameters
}  // namespace OpenAPI
