#include "bottleservice/bottles/LaunchData.h"

#include <QDateTime>
#include <QFileInfo>
#include <QJsonDocument>
#include <QRegularExpression>

#include "bottleservice/bottles/BottleStore.h"

namespace LaunchData {

namespace {

const char FileName[] = "/launch.json";

// "name=method" joined by ";". What would break out of that form is left out.
QString dllOverrides(const QJsonObject& overrides) {
    static const QRegularExpression name("\\A\\*?[^;=,\\s\"]+\\z");
    static const QRegularExpression method("\\A(n|b|n,b|b,n|)\\z");
    QStringList parts;
    for (auto it = overrides.begin(); it != overrides.end(); ++it) {
        const QString value = it.value().toString();
        if (name.match(it.key()).hasMatch() && method.match(value).hasMatch())
            parts += it.key() + '=' + value;
    }
    return parts.join(';');
}

bool isRenderer(const QString& name) {
    return name == "gl" || name == "vulkan" || name == "gdi";
}

}  // namespace

QJsonObject environment(const QString& bottlePath, const QJsonObject& record) {
    QJsonObject variables{{"WINEPREFIX", bottlePath}};
    const QString overrides = dllOverrides(record["DLL_Overrides"].toObject());
    if (!overrides.isEmpty())
        variables.insert("WINEDLLOVERRIDES", overrides);
    const QJsonObject parameters = record["Parameters"].toObject();
    if (isRenderer(parameters["renderer"].toString()))
        variables.insert("WINE_D3D_CONFIG", "renderer=" + parameters["renderer"].toString());
    if (parameters["discrete_gpu"].toBool())
        variables.insert("DRI_PRIME", "1");
    if (parameters["cpu_rendering"].toBool())
        variables.insert("LIBGL_ALWAYS_SOFTWARE", "1");
    if (parameters["ntsync"].toBool())
        variables.insert("WINENTSYNC", "1");
    return variables;
}

QByteArray render(const QString& bottlePath, const QJsonObject& record, const Runner& runner) {
    QJsonObject programs;
    const QJsonObject entries = record["External_Programs"].toObject();
    for (auto it = entries.begin(); it != entries.end(); ++it) {
        const QJsonObject entry = it.value().toObject();
        programs.insert(it.key(), QJsonObject{{"name", entry["name"].toString()},
                                              {"path", entry["path"].toString()},
                                              {"folder", entry["folder"].toString()},
                                              {"arguments", entry["arguments"].toString()},
                                              {"envs", entry["envs"].toObject()}});
    }
    const QJsonObject data{{"version", Version},
                           {"path", bottlePath},
                           {"runner", record["Runner"].toString()},
                           {"wine", runner.wine},
                           {"wineserver", runner.wineserver},
                           {"env", environment(bottlePath, record)},
                           {"programs", programs}};
    return QJsonDocument(data).toJson(QJsonDocument::Compact);
}

bool write(const QString& directory, const QByteArray& content, QString* error) {
    return BottleStore::replaceFile(directory + FileName, content, error);
}

bool isStale(const QString& bottlePath) {
    const QFileInfo data(bottlePath + FileName);
    return !data.exists() || QFileInfo(bottlePath + "/bottle.yml").lastModified() > data.lastModified();
}

}  // namespace LaunchData
