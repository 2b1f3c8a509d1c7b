#include "fenk/system/FindIgnoringCase.h"

#include <QDir>
#include <QFileInfo>

// Names are compared here and not given to QDir as filters, for which the brackets of "setup[1].exe" are a
// pattern.
QString Fenk::findIgnoringCase(const QString& directory, const QString& name) {
    if (QFileInfo::exists(directory + '/' + name))
        return name;
    QString match;
    const QStringList entries = QDir(directory).entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
    for (const QString& entry : entries) {
        if (entry == name)
            return entry;
        if (match.isEmpty() && entry.compare(name, Qt::CaseInsensitive) == 0)
            match = entry;
    }
    return match;
}
