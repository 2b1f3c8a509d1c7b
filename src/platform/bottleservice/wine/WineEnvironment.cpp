#include "bottleservice/wine/WineEnvironment.h"

#include <langinfo.h>
#include <clocale>

namespace WineEnvironment {

namespace {

bool isUtf8(const QString& name) {
    const locale_t locale = newlocale(LC_CTYPE_MASK, name.toLocal8Bit().constData(), locale_t(nullptr));
    if (!locale)
        return false;
    const QByteArray characters = nl_langinfo_l(CODESET, locale);
    freelocale(locale);
    return characters == "UTF-8";
}

QString effectiveLocale(const QProcessEnvironment& environment) {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const QString value = environment.value(name);
        if (!value.isEmpty())
            return value;
    }
    return "C";
}

/// Prefers the same language, since Wine also derives the character set of old programs from it.
QString utf8LocaleFor(const QString& present) {
    const QString language = present.section('@', 0, 0).section('.', 0, 0);
    for (const QString& name : {language + ".UTF-8", QString("C.UTF-8"), QString("en_US.UTF-8")}) {
        if (isUtf8(name))
            return name;
    }
    return {};
}

/// The launch script has the same rule (characters.py).
void useUtf8(QProcessEnvironment* environment) {
    const QString present = effectiveLocale(*environment);
    const QString chosen = isUtf8(present) ? QString() : utf8LocaleFor(present);
    if (chosen.isEmpty())
        return;
    const QString everything = environment->value("LC_ALL");
    environment->remove("LC_ALL");
    if (!everything.isEmpty()) {
        for (const char* category :
             {"LC_NUMERIC", "LC_TIME", "LC_COLLATE", "LC_MONETARY", "LC_MESSAGES", "LC_PAPER", "LC_NAME",
              "LC_ADDRESS", "LC_TELEPHONE", "LC_MEASUREMENT", "LC_IDENTIFICATION"})
            environment->insert(category, everything);
    }
    environment->insert("LC_CTYPE", chosen);
}

}  // namespace

QProcessEnvironment forProcess(const QJsonObject& variables, const QProcessEnvironment& base) {
    QProcessEnvironment environment = base;
    for (const char* name :
         {"WINEPREFIX", "WINEARCH", "WINESERVER", "WINELOADER", "WINEDEBUG", "WINEDLLOVERRIDES",
          "WINEDLLPATH", "WINE_D3D_CONFIG", "WINE_WMCLASS", "_CXB_WINE_PROGRAM_UUID"})
        environment.remove(name);
    useUtf8(&environment);
    for (auto it = variables.begin(); it != variables.end(); ++it)
        environment.insert(it.key(), it.value().toString());
    return environment;
}

QJsonObject forCreation(const QString& prefix) {
    return {{"WINEPREFIX", prefix},
            {"WINEDLLOVERRIDES", "mscoree,mshtml,winebrowser.exe,winemenubuilder.exe="},
            {"WINEDEBUG", "-all"}};
}

}  // namespace WineEnvironment
