#include "store/install/SetupTitle.h"

#include <QCoreApplication>

namespace {

const char* const Titles[] = {
    QT_TRANSLATE_NOOP("SetupTitle", "Creating the bottle"),
    QT_TRANSLATE_NOOP("SetupTitle", "Installing graphics components"),
    QT_TRANSLATE_NOOP("SetupTitle", "Applying settings"),
    QT_TRANSLATE_NOOP("SetupTitle", "Writing files"),
    QT_TRANSLATE_NOOP("SetupTitle", "Running commands"),
    QT_TRANSLATE_NOOP("SetupTitle", "Finishing"),
};

/// With the name of a component at the end.
const char* const Beginnings[] = {
    QT_TRANSLATE_NOOP("SetupTitle", "Fetching %1"),
    QT_TRANSLATE_NOOP("SetupTitle", "Installing %1"),
};

QString translated(const char* english) {
    return QCoreApplication::translate("SetupTitle", english);
}

}  // namespace

QString setupTitle(const QString& english) {
    for (const char* title : Titles) {
        if (english == QLatin1String(title))
            return translated(title);
    }
    for (const char* title : Beginnings) {
        const QString beginning = QString::fromLatin1(title).section('%', 0, 0);
        if (english.startsWith(beginning))
            return translated(title).arg(english.mid(beginning.size()));
    }
    return english;
}
