#include "bottleservice/wine/LaunchData.h"

#include <sys/stat.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include "bottleservice/bottles/Emulators.h"
#include "bottleservice/files/AtomicFile.h"
#include "bottleservice/settings/DllOverrides.h"
#include "fenk/system/RegularFile.h"
#include "manifest/SettingRules.h"

namespace LaunchData {

namespace {

const char FileName[] = "/launch.json";
constexpr qint64 MaximumBytes = 16 * 1024 * 1024;

void insertAll(QJsonObject* variables, std::initializer_list<std::pair<const char*, const char*>> values) {
    for (const auto& [name, value] : values)
        variables->insert(name, value);
}

/// Size and time of bottle.yml tell of every edit by hand, also when an older file was copied over it.
QJsonObject stampOf(const QString& directory) {
    struct stat status = {};
    if (::stat(QFile::encodeName(directory + "/bottle.yml").constData(), &status) != 0)
        return {};
    const qint64 time = qint64(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec;
    // As text: a JSON number would lose the last digits of the time.
    return {{"size", QString::number(status.st_size)}, {"mtime_ns", QString::number(time)}};
}

}  // namespace

QJsonObject environment(const QString& bottlePath, const QJsonObject& record) {
    QJsonObject variables{{"WINEPREFIX", bottlePath},
                          {"WINEDLLOVERRIDES", DllOverrides::variable(record["DLL_Overrides"].toObject())}};
    const QJsonObject parameters = record["Parameters"].toObject();
    const QString renderer = parameters["renderer"].toString();
    if (SettingRules::isRenderer(renderer))
        variables.insert("WINE_D3D_CONFIG", "renderer=" + renderer);
    if (parameters["discrete_gpu"].toBool()) {
        variables.insert("DRI_PRIME", "1");
        if (QFile::exists("/proc/driver/nvidia/version"))
            insertAll(&variables, {{"__NV_PRIME_RENDER_OFFLOAD", "1"},
                                   {"__GLX_VENDOR_LIBRARY_NAME", "nvidia"},
                                   {"__VK_LAYER_NV_optimus", "NVIDIA_only"}});
    }
    if (parameters["cpu_rendering"].toBool())
        insertAll(&variables, {{"LIBGL_ALWAYS_SOFTWARE", "1"}, {"GALLIUM_DRIVER", "llvmpipe"}});
    // Few heaps whose memory is given back early; costs programs with many threads a little speed.
    if (parameters["mem_optimized"].toBool())
        insertAll(&variables, {{"MALLOC_ARENA_MAX", "2"}, {"MALLOC_TRIM_THRESHOLD_", "131072"}});
    if (parameters["ntsync"].toBool())
        insertAll(&variables, {{"WINENTSYNC", "1"}, {"PROTON_USE_NTSYNC", "1"}});
    return variables;
}

QJsonObject render(const QString& bottlePath, const QJsonObject& record, const Runner& runner) {
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
    return {{"version", Version},
            {"path", bottlePath},
            {"runner", record["Runner"].toString()},
            {"wine", runner.wine},
            {"wineserver", runner.wineserver},
            {"emulator", Emulators::pathInUse(record["Emulator"].toString())},
            {"env", environment(bottlePath, record)},
            {"programs", programs}};
}

bool write(const QString& directory, QJsonObject data, QString* error) {
    data.insert("source", stampOf(directory));
    return AtomicFile::replace(directory + FileName, QJsonDocument(data).toJson(QJsonDocument::Compact),
                               error);
}

bool isStale(const QString& bottlePath) {
    const auto text = Fenk::RegularFile::read(bottlePath + FileName, MaximumBytes);
    if (!text)
        return true;
    const QJsonObject data = QJsonDocument::fromJson(*text).object();
    return data["version"].toInt() != Version || data["source"].toObject() != stampOf(bottlePath);
}

}  // namespace LaunchData
