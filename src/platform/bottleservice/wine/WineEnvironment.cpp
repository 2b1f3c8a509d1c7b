#include "bottleservice/wine/WineEnvironment.h"

namespace WineEnvironment {

namespace {

bool isUtf8Locale(const QProcessEnvironment& environment) {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const QString value = environment.value(name).toLower();
        if (!value.isEmpty())
            return value.contains("utf-8") || value.contains("utf8");
    }
    return false;
}

}  // namespace

QProcessEnvironment forProcess(const QJsonObject& variables, const QProcessEnvironment& base) {
    QProcessEnvironment environment = base;
    for (const char* name :
         {"WINEPREFIX", "WINEARCH", "WINESERVER", "WINELOADER", "WINEDEBUG", "WINEDLLOVERRIDES",
          "WINEDLLPATH", "WINE_D3D_CONFIG", "WINE_WMCLASS", "_CXB_WINE_PROGRAM_UUID"})
        environment.remove(name);
    if (!isUtf8Locale(environment)) {
        environment.remove("LC_ALL");
        environment.insert("LC_CTYPE", "C.UTF-8");
    }
    for (auto it = variables.begin(); it != variables.end(); ++it)
        environment.insert(it.key(), it.value().toString());
    return environment;
}

QJsonObject forCreation(const QString& prefix) {
    return {{"WINEPREFIX", prefix},
            {"WINEDLLOVERRIDES", "mscoree,mshtml,winemenubuilder.exe="},
            {"WINEDEBUG", "-all"}};
}

}  // namespace WineEnvironment
