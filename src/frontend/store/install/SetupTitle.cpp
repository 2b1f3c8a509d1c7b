#include "store/install/SetupTitle.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

namespace {

const char* const Titles[] = {
    QT_TRANSLATE_NOOP("SetupTitle", "Creating the bottle"),
    QT_TRANSLATE_NOOP("SetupTitle", "Installing graphics components"),
    QT_TRANSLATE_NOOP("SetupTitle", "Applying settings"),
    QT_TRANSLATE_NOOP("SetupTitle", "Writing files"),
    QT_TRANSLATE_NOOP("SetupTitle", "Running commands"),
    QT_TRANSLATE_NOOP("SetupTitle", "Finishing"),
};

/// With names of components, files or commands, and amounts of data. The longer of two that begin alike is
/// first.
const char* const Patterns[] = {
    QT_TRANSLATE_NOOP("SetupTitle", "Fetching %1"),
    QT_TRANSLATE_NOOP("SetupTitle", "Installing %1 with winetricks"),
    QT_TRANSLATE_NOOP("SetupTitle", "Installing %1"),
    QT_TRANSLATE_NOOP("SetupTitle", "Downloading %1: %2 of %3"),
    QT_TRANSLATE_NOOP("SetupTitle", "Downloading %1: %2"),
    QT_TRANSLATE_NOOP("SetupTitle", "Downloading %1"),
    QT_TRANSLATE_NOOP("SetupTitle", "Unpacking %1"),
    QT_TRANSLATE_NOOP("SetupTitle", "Running %1"),
};

QString translated(const char* english) {
    return QCoreApplication::translate("SetupTitle", english);
}

/// What stands in the places of the pattern; empty when the text is not of it.
QStringList valuesIn(const QString& text, const char* pattern) {
    QString expression = QRegularExpression::escape(QLatin1String(pattern));
    for (const char* place : {"\\%1", "\\%2", "\\%3"})
        expression.replace(QLatin1String(place), "(.+)");
    const QRegularExpression whole(QRegularExpression::anchoredPattern(expression));
    return whole.match(text).capturedTexts().mid(1);
}

/// At once, since a value may contain "%1".
QString withValues(const QString& text, const QStringList& values) {
    switch (values.size()) {
        case 1:
            return text.arg(values[0]);
        case 2:
            return text.arg(values[0], values[1]);
        default:
            return text.arg(values[0], values[1], values[2]);
    }
}

}  // namespace

QString setupTitle(const QString& english) {
    for (const char* title : Titles) {
        if (english == QLatin1String(title))
            return translated(title);
    }
    for (const char* pattern : Patterns) {
        const QStringList values = valuesIn(english, pattern);
        if (!values.isEmpty())
            return withValues(translated(pattern), values);
    }
    return english;
}
