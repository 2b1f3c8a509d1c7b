#include "bottleservice/settings/DllOverrides.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

const QLatin1String MenuBuilder("winemenubuilder.exe");

}  // namespace

bool DllOverrides::isName(const QString& name) {
    // No character that could end the entry, and no directory.
    static const QRegularExpression pattern("\\A\\*?[^;=,\"*/\\\\:[:cntrl:]]+\\z");
    return name.size() <= 255 && name == name.trimmed() && pattern.match(name).hasMatch();
}

bool DllOverrides::isMethod(const QString& method) {
    static const QStringList methods = {"n", "b", "n,b", "b,n", ""};
    return methods.contains(method);
}

QString DllOverrides::variable(const QJsonObject& overrides) {
    QStringList parts;
    if (!overrides.contains(MenuBuilder))
        parts += QString(MenuBuilder) + '=';
    for (auto it = overrides.begin(); it != overrides.end(); ++it) {
        const QString method = it.value().toString();
        if (isName(it.key()) && isMethod(method))
            parts += it.key() + '=' + method;
    }
    return parts.join(';');
}
