#include "shell/configuration/components/WineVersionCombobox.h"

#include <QSignalBlocker>

#include "backend/ComponentManager.h"

void WineVersionCombobox::showPopup() {
    rebuild();
    QComboBox::showPopup();
}

void WineVersionCombobox::rebuild() {
    const QSignalBlocker blocker(this);
    const QString chosen = currentText();
    QStringList versions = ComponentManager::instance()->knownRunners();
    if (!chosen.isEmpty() && !versions.contains(chosen))
        versions.append(chosen);
    clear();
    for (const QString& version : qAsConst(versions))
        addItem(version, version);
    setCurrentIndex(findText(chosen));
}
