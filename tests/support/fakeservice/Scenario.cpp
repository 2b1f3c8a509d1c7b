#include "support/fakeservice/Scenario.h"

namespace {

const QMap<QString, QString>& bottleTable() {
    static const QMap<QString, QString> table = [] {
        const QString methods = R"(
            list: get:s createBottles:ss delete:s getEmulators:s setEmulator:ss setRunner:ssb setDxvk:ssb
            setVkD3D:ssb getInstallingComponents:ss cancelInstallingComponent:sss installDependency:ss
            reinstallDependency:ss getInstallingDependency:s cancelInstallingDependency:s setDPI:si
            setCpuRendering:sb setDiscreteGpu:sb setMemOptimized:sb setNTSync:sb setD3dRenderer:ss
            setWindowsVersion:ss listDllOverrides:s updateDllOverride:sssb getExternalProgramsDllList:s
            getExternalProgramsUpdateExes:s listFontReplacements:s addFontReplacements:sss
            removeFontReplacement:ss listAllPrograms: listBottlesAllPrograms:s updateExternalProgram:ss
            removeExternalProgram:ss scanApplicationLinks:sxb createDesktopEntry:ss killProgram:ss
            killWineServer:s run_command:ss exportFileAssociations:sas dumpManifest:s checkPublicBottles:s
            getRunnerVersion:s)";
        QMap<QString, QString> result;
        for (const QString& method : methods.simplified().split(' '))
            result[method.section(':', 0, 0)] = method.section(':', 1);
        return result;
    }();
    return table;
}

}  // namespace

QString Scenario::bottleSignature(const QString& method) {
    return bottleTable().value(method);
}

QStringList Scenario::bottleMethods() {
    return bottleTable().keys();
}

QJsonObject Scenario::answerFor(const QString& interface, const QString& method,
                                const QString& firstArgument) {
    const QString word = interface.section('.', -1);
    const QString keys[] = {word + "." + method + ":" + firstArgument, word + "." + method,
                            method + ":" + firstArgument, method};
    for (const QString& key : keys) {
        const auto it = m_answers.find(key);
        if (it == m_answers.end() || it->isEmpty())
            continue;
        return it->size() > 1 ? it->takeFirst() : it->first();
    }
    return ordinaryAnswer(word, method);
}

QJsonObject Scenario::ordinaryAnswer(const QString& word, const QString& method) {
    if (method == "GetVersion")
        return {{"text", "3.3.4.008"}};
    if (word == "Bottles" && method == "get")
        return {{"error", "no such bottle"}, {"errorName", "com.lumora.Error.NoSuchBottle"}};
    if (method == "createBottles" || method == "install")
        return {{"text", R"({"ok":true})"}};
    static const QString objects =
        " Components.list Bottles.getInstallingComponents Bottles.listDllOverrides "
        "Bottles.listFontReplacements "
        "Bottles.getEmulators ";
    static const QString arrays =
        " list listAllPrograms listBottlesAllPrograms scanApplicationLinks getExternalProgramsDllList "
        "getExternalProgramsUpdateExes ";
    if (objects.contains(' ' + word + '.' + method + ' '))
        return {{"text", "{}"}};
    return {{"text", arrays.contains(' ' + method + ' ') ? "[]" : ""}};
}
