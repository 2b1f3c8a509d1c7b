#include "shell/configuration/dlls/DllNames.h"

#include <QRegularExpression>

namespace {

QString moduleOf(const QString& name) {
    const QLatin1String suffix(".dll");
    return name.endsWith(suffix, Qt::CaseInsensitive) ? name.chopped(suffix.size()) : name;
}

}  // namespace

bool DllNames::isGood(const QString& name) {
    static const QRegularExpression pattern("\\A\\*?[^;=,\"*/\\\\:[:cntrl:]]+\\z");
    return name.size() <= 255 && name == name.trimmed() && pattern.match(name).hasMatch();
}

bool DllNames::isSame(const QString& name, const QString& other) {
    return moduleOf(name).compare(moduleOf(other), Qt::CaseInsensitive) == 0;
}
