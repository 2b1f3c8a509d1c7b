#include "shell/configuration/dlls/ScanChanges.h"

#include "shell/configuration/dlls/LoadMethods.h"

QVector<ScanChange> ScanChanges::of(const TableRows& overrides, const QStringList& found, int method) {
    QMap<QString, int> methods;
    for (auto it = overrides.begin(); it != overrides.end(); ++it)
        methods.insert(it.key().toLower(), LoadMethods::ofWireValue(it.value()));
    QStringList names;
    for (const QString& name : found)
        names << name.toLower();
    names.removeDuplicates();
    QVector<ScanChange> changes;
    for (const QString& name : qAsConst(names)) {
        const auto row = methods.find(name);
        if (!name.isEmpty() && (row == methods.end() || *row != method))
            changes.append({name, row == methods.end(), row == methods.end() ? -1 : *row});
    }
    return changes;
}
