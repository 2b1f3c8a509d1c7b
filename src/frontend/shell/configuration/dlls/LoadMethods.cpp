#include "shell/configuration/dlls/LoadMethods.h"

#include <QCoreApplication>
#include <QDebug>
#include <QStringList>

namespace {

const struct {
    const char* text;
    const char* wireValue;
} Methods[LoadMethods::Count] = {{QT_TRANSLATE_NOOP("LoadMethods", "Native (Windows)"), "n"},
                                 {QT_TRANSLATE_NOOP("LoadMethods", "Builtin (Wine)"), "b"},
                                 {QT_TRANSLATE_NOOP("LoadMethods", "Native then Builtin"), "n,b"},
                                 {QT_TRANSLATE_NOOP("LoadMethods", "Builtin then Native"), "b,n"},
                                 {QT_TRANSLATE_NOOP("LoadMethods", "Disabled"), ""}};

int valid(int method) {
    return method < 0 || method >= LoadMethods::Count ? LoadMethods::Native : method;
}

}  // namespace

QString LoadMethods::text(int method) {
    return QCoreApplication::translate("LoadMethods", Methods[valid(method)].text);
}

QString LoadMethods::wireValue(int method) {
    return QString(Methods[valid(method)].wireValue);
}

/// Wine takes words for letters, too: "native,builtin".
int LoadMethods::ofWireValue(const QString& value) {
    QStringList letters;
    for (const QString& part : value.split(',', Qt::SkipEmptyParts))
        letters << part.trimmed().left(1);
    for (int method = 0; method < Count; ++method) {
        if (letters.join(',') == QLatin1String(Methods[method].wireValue))
            return method;
    }
    qWarning() << "unknown load method" << value;
    return Native;
}
