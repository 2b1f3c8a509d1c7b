#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>
#include <optional>

#include "backend/EmulatorsInfo.h"
#include "backend/ServiceProxy.h"

/// The client of the background service's bottle interface; holds no state. Structured data crosses the bus
/// as JSON text. A call may take an hour, since it may wait behind a long Wine operation. Calls that block
/// may come from any thread; those with a handler or an owner, and signals, belong to the GUI thread. Methods
/// that return a BusResult leave the error message to their caller.
class BottlesConfig : public ServiceProxy<BottlesConfig> {
    Q_OBJECT
    friend class Fenk::Singleton<BottlesConfig>;

public:
    // Bottles. A failure reads as empty and leaves a warning.
    QStringList list();
    QJsonObject get(const QString& bottle);
    /// get, with a live event loop. Without a value when owner goes or the program quits meanwhile.
    std::optional<QJsonObject> getInLoop(const QString& bottle, QObject* owner);
    /// get() without waiting.
    void watchBottle(const QString& bottle, QObject* context, const Handler& handler) {
        watch("get", {bottle}, context, handler);
    }
    /// Ends in the signal bottlesCreated().
    void createBottles(const QString& bottle, const QString& runner);
    /// Ends in the signal bottles_deleted().
    void deleteBottle(const QString& bottle) { fire("delete", {bottle}); }
    /// Not in the GUI thread.
    BusResult deleteBottleAndWait(const QString& bottle) { return block("delete", {bottle}, Ignored); }
    EmulatorsInfo getEmulators(const QString& bottle);
    /// The handler gets what EmulatorsInfo::fromObject() reads.
    void watchEmulators(const QString& bottle, QObject* context, const Handler& handler) {
        watch("getEmulators", {bottle}, context, handler);
    }
    void setEmulator(const QString& bottle, const QString& emulator, QObject* context = nullptr,
                     const Handler& handler = {}) {
        fireOrWatch("setEmulator", {bottle, emulator}, context, handler);
    }

    // Components and dependencies. kind is one of ComponentKind; the version "-" turns DXVK or VKD3D off.
    // The optional handlers get the call's own end: signals tell how the work went, and never come when the
    // service could not be reached or has refused.
    void setRunner(const QString& bottle, const QString& version, QObject* context = nullptr,
                   const Handler& handler = {}) {
        fireOrWatch("setRunner", {bottle, version, true}, context, handler);
    }
    void setDxvk(const QString& bottle, const QString& version, QObject* context = nullptr,
                 const Handler& handler = {}) {
        fireOrWatch("setDxvk", {bottle, version, true}, context, handler);
    }
    void setVkD3D(const QString& bottle, const QString& version, QObject* context = nullptr,
                  const Handler& handler = {}) {
        fireOrWatch("setVkD3D", {bottle, version, true}, context, handler);
    }
    QJsonObject getInstallingComponents(const QString& bottle, const QString& kind);
    BusResult cancelInstallingComponent(const QString& bottle, const QString& kind, const QString& name) {
        return block("cancelInstallingComponent", {bottle, kind, name}, Ignored);
    }
    void installDependency(const QString& bottle, const QString& dependency, QObject* context = nullptr,
                           const Handler& handler = {}) {
        fireOrWatch("installDependency", {bottle, dependency}, context, handler);
    }
    void reinstallDependency(const QString& bottle, const QString& dependency, QObject* context = nullptr,
                             const Handler& handler = {}) {
        fireOrWatch("reinstallDependency", {bottle, dependency}, context, handler);
    }
    /// The same without waiting.
    void watchInstallingComponents(const QString& bottle, const QString& kind, QObject* context,
                                   const Handler& handler) {
        watch("getInstallingComponents", {bottle, kind}, context, handler);
    }
    QString getInstallingDependency(const QString& bottle);
    /// The same without waiting.
    void cancelInstallingComponent(const QString& bottle, const QString& kind, const QString& name,
                                   QObject* context, const Handler& handler) {
        watch("cancelInstallingComponent", {bottle, kind, name}, context, handler, Ignored);
    }
    /// Aborts the one that is being installed, whoever has asked for it.
    void cancelInstallingDependency(const QString& bottle, QObject* context, const Handler& handler) {
        watch("cancelInstallingDependency", {bottle}, context, handler, Ignored);
    }
    BusResult getRunnerVersion(const QString& runner) { return block("getRunnerVersion", {runner}); }
    void watchRunnerVersion(const QString& runner, QObject* context, const Handler& handler) {
        watch("getRunnerVersion", {runner}, context, handler);
    }

    // Switches. No signal confirms them; the optional handlers get the call's own end.
    void setDPI(const QString& bottle, int dpi, QObject* context = nullptr, const Handler& handler = {}) {
        fireOrWatch("setDPI", {bottle, dpi}, context, handler);
    }
    void setCpuRendering(const QString& bottle, bool on, QObject* context = nullptr,
                         const Handler& handler = {}) {
        fireOrWatch("setCpuRendering", {bottle, on}, context, handler);
    }
    void setDiscreteGpu(const QString& bottle, bool on, QObject* context = nullptr,
                        const Handler& handler = {}) {
        fireOrWatch("setDiscreteGpu", {bottle, on}, context, handler);
    }
    void setMemOptimized(const QString& bottle, bool on, QObject* context = nullptr,
                         const Handler& handler = {}) {
        fireOrWatch("setMemOptimized", {bottle, on}, context, handler);
    }
    void setNTSync(const QString& bottle, bool on, QObject* context = nullptr, const Handler& handler = {}) {
        fireOrWatch("setNTSync", {bottle, on}, context, handler);
    }
    void setD3dRenderer(const QString& bottle, const QString& renderer, QObject* context = nullptr,
                        const Handler& handler = {}) {
        fireOrWatch("setD3dRenderer", {bottle, renderer}, context, handler);
    }
    void setWindowsVersion(const QString& bottle, const QString& version, QObject* context = nullptr,
                           const Handler& handler = {}) {
        fireOrWatch("setWindowsVersion", {bottle, version}, context, handler);
    }

    // DLL overrides and fonts. The handlers get objects as text.
    void listDllOverrides(const QString& bottle, QObject* context, const Handler& handler) {
        watch("listDllOverrides", {bottle}, context, handler);
    }
    void updateDllOverride(const QString& bottle, const QString& dll, const QString& method, QObject* context,
                           const Handler& handler) {
        watch("updateDllOverride", {bottle, dll, method, false}, context, handler, Ignored);
    }
    void removeDllOverride(const QString& bottle, const QString& dll, QObject* context,
                           const Handler& handler) {
        watch("updateDllOverride", {bottle, dll, QString(""), true}, context, handler, Ignored);
    }
    void getExternalProgramsDllList(const QString& bottle, QObject* context, const Handler& handler) {
        watch("getExternalProgramsDllList", {bottle}, context, handler);
    }
    void getExternalProgramsUpdateExes(const QString& bottle, QObject* context, const Handler& handler) {
        watch("getExternalProgramsUpdateExes", {bottle}, context, handler);
    }
    void listFontReplacements(const QString& bottle, QObject* context, const Handler& handler) {
        watch("listFontReplacements", {bottle}, context, handler);
    }
    void addFontReplacements(const QString& bottle, const QString& font, const QString& replacement,
                             QObject* context, const Handler& handler) {
        watch("addFontReplacements", {bottle, font, replacement}, context, handler, Ignored);
    }
    void removeFontReplacement(const QString& bottle, const QString& font, QObject* context,
                               const Handler& handler) {
        watch("removeFontReplacement", {bottle, font}, context, handler, Ignored);
    }

    // Programs. The two waits with a running event loop end early when owner is destroyed.
    BusResult listAllPrograms(QObject* owner) { return loop("listAllPrograms", {}, owner); }
    /// The same without waiting.
    void watchAllPrograms(QObject* context, const Handler& handler) {
        watch("listAllPrograms", {}, context, handler);
    }
    void listBottlesAllPrograms(const QString& bottle, QObject* context, const Handler& handler) {
        watch("listBottlesAllPrograms", {bottle}, context, handler);
    }
    BusResult updateExternalProgram(const QString& bottle, const QJsonObject& record);
    void fireUpdateExternalProgram(const QString& bottle, const QJsonObject& record);
    /// Sends the record as a value and not as text. The bus has no such type: the call fails in this process
    /// and nothing reaches the service.
    void syncExternalProgram(const QString& bottle, const QJsonObject& record) {
        fire("updateExternalProgram", {bottle, record});
    }
    /// Also takes the program out of the bottle's fileinfo.cache.
    BusResult removeExternalProgram(const QString& bottle, const QString& programId);
    /// The shortcuts added since the time; empty on every failure.
    QJsonArray scanApplicationLinks(const QString& bottle, const QDateTime& since, QObject* owner = nullptr);
    /// The same without waiting.
    void watchApplicationLinks(const QString& bottle, const QDateTime& since, QObject* context,
                               const Handler& handler);
    BusResult createDesktopEntry(const QString& bottle, const QString& programId) {
        return block("createDesktopEntry", {bottle, programId}, Ignored);
    }
    void killProgram(const QString& bottle, const QString& programId);
    void killWineServer(const QString& bottle, QObject* context = nullptr, const Handler& handler = {});
    void runCommand(const QString& bottle, const QString& commandLine, QObject* context = nullptr,
                    const Handler& handler = {}) {
        fireOrWatch("run_command", {bottle, commandLine}, context, handler);
    }
    void exportFileAssociations(const QString& bottle, const QStringList& keys) {
        fire("exportFileAssociations", {bottle, keys});
    }

    // Questions with JSON text as argument.
    /// The handler gets the path of the written manifest.
    void dumpManifest(const QString& json, QObject* context, const Handler& handler) {
        watch("dumpManifest", {json}, context, handler);
    }
    BusResult checkPublicBottles(const QString& json) { return block("checkPublicBottles", {json}); }

Q_SIGNALS:
    // bottlesCreated, dependecyInstalled and endRequested are local; all others come from the bus under these
    // names.
    void bottlesCreated(const QString& bottles_name, const QJsonObject& result);
    /// This process asks the service to end a program, or all of the bottle where there is no id.
    void endRequested(const QString& bottle, const QString& programId);
    void dependencySetupDone(const QString& bottleName, const QString& dependencyName, const QString& result);
    void dependecyInstalled(const QString& bottles_name, const QString& dependency_name,
                            const QJsonObject& result);
    void dependencyDownloadProgress(const QString& bottleName, const QString& dependencyName,
                                    uint received_size, uint total_size, const QString& status);
    void dependencySetupDescription(const QString& bottleName, const QString& dependencyName,
                                    const QString& description);
    void dependencySetupStepNotify(const QString& bottlesName, const QString& dependencyName, int cur_steps,
                                   int total_steps);
    void bottles_deleted(const QString& bottleName);
    void program_deleted(const QString& bottleName, const QString& programUuid);
    void program_added(const QString& bottle_name, const QString& uuid, const QString& program_obj);
    void program_updated(const QString& bottle_name, const QString& uuid, const QString& program_obj);
    void program_exited(const QString& uuid);
    void component_waiting_downloaded(const QString& bottle_name, const QString& component_type,
                                      const QString& component_name);
    void component_setup_start(const QString& bottle_name, const QString& component_type,
                               const QString& component_name);
    void component_setup_done(const QString& bottle_name, const QString& component_type,
                              const QString& component_name, const QString& result);

private:
    static constexpr auto Ignored = BusReply::Wanted::Ignored;

    BottlesConfig();

    void forgetFileInfo(const QString& bottle, const QString& programId);
    void fireOrWatch(const QString& method, const QVariantList& arguments, QObject* context,
                     const Handler& handler);
    void onDependencySetupDone(const QString& bottleName, const QString& dependencyName,
                               const QString& result);
};
