#pragma once

#include <QDBusAbstractInterface>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

#include "backend/BusCall.h"
#include "backend/BusResult.h"
#include "backend/EmulatorsInfo.h"
#include "fenk/system/Singleton.h"

/// The client of the background service's bottle interface; holds no state. Structured data crosses the bus
/// as JSON text. The time-out of 3600000 ms is deliberate: a blocking call may wait behind a long Wine
/// operation. A block or fire call may come from any thread, watch and loop calls and signals belong to the
/// GUI thread. Methods that hand out a BusResult leave the words for a failure to their caller.
class BottlesConfig : public QDBusAbstractInterface, public Fenk::Singleton<BottlesConfig> {
    Q_OBJECT
    friend class Fenk::Singleton<BottlesConfig>;

public:
    using Handler = BusCall::Handler;

    // Bottles. A failure reads as empty and leaves a warning.
    QStringList list();
    QJsonObject get(const QString& bottle);
    void watchBottle(const QString& bottle, QObject* context,
                     const Handler& handler);                          ///< get, without a wait
    void createBottles(const QString& bottle, const QString& runner);  ///< ends in bottlesCreated
    void deleteBottle(const QString& bottle);                          ///< ends in bottles_deleted
    BusResult deleteBottleAndWait(const QString& bottle);              ///< not in the GUI thread
    EmulatorsInfo getEmulators(const QString& bottle);
    /// The handler gets what EmulatorsInfo::fromObject() reads.
    void watchEmulators(const QString& bottle, QObject* context, const Handler& handler);
    void setEmulator(const QString& bottle, const QString& emulator);

    // Components and dependencies. kind is one of ComponentKind; the version "-" turns DXVK or VKD3D off.
    // The optional handlers get the call's own end: signals tell how the work went, and never come when the
    // service could not be reached or has refused.
    void setRunner(const QString& bottle, const QString& version, QObject* context = nullptr,
                   const Handler& handler = {});
    void setDxvk(const QString& bottle, const QString& version);
    void setVkD3D(const QString& bottle, const QString& version);
    QJsonObject getInstallingComponents(const QString& bottle, const QString& kind);
    BusResult cancelInstallingComponent(const QString& bottle, const QString& kind, const QString& name);
    void installDependency(const QString& bottle, const QString& dependency, QObject* context = nullptr,
                           const Handler& handler = {});
    void reinstallDependency(const QString& bottle, const QString& dependency);
    QString getInstallingDependency(const QString& bottle);
    BusResult cancelInstallingDependency(const QString& bottle);
    /// The same two without a wait.
    void cancelInstallingComponent(const QString& bottle, const QString& kind, const QString& name,
                                   QObject* context, const Handler& handler);
    void cancelInstallingDependency(const QString& bottle, QObject* context, const Handler& handler);
    BusResult getRunnerVersion(const QString& runner);
    void watchRunnerVersion(const QString& runner, QObject* context, const Handler& handler);

    // Switches; none of them confirms.
    void setDPI(const QString& bottle, int dpi);
    void setCpuRendering(const QString& bottle, bool on);
    void setDiscreteGpu(const QString& bottle, bool on);
    void setMemOptimized(const QString& bottle, bool on);
    void setNTSync(const QString& bottle, bool on);
    void setD3dRenderer(const QString& bottle, const QString& renderer);
    void setWindowsVersion(const QString& bottle, const QString& version);

    // DLL overrides and fonts. The handlers get objects as text.
    void listDllOverrides(const QString& bottle, QObject* context, const Handler& handler);
    void updateDllOverride(const QString& bottle, const QString& dll, const QString& method);
    void removeDllOverride(const QString& bottle, const QString& dll);
    BusResult getExternalProgramsDllList(const QString& bottle);
    BusResult getExternalProgramsUpdateExes(const QString& bottle);
    void listFontReplacements(const QString& bottle, QObject* context, const Handler& handler);
    void addFontReplacements(const QString& bottle, const QString& font, const QString& replacement);
    void removeFontReplacement(const QString& bottle, const QString& font);

    // Programs. The two waits with a live event loop end early when owner goes.
    BusResult listAllPrograms(QObject* owner);
    /// The same without a wait.
    void watchAllPrograms(QObject* context, const Handler& handler);
    void listBottlesAllPrograms(const QString& bottle, QObject* context, const Handler& handler);
    BusResult updateExternalProgram(const QString& bottle, const QJsonObject& record);
    void fireUpdateExternalProgram(const QString& bottle, const QJsonObject& record);
    /// Also takes the program out of the bottle's fileinfo.cache.
    BusResult removeExternalProgram(const QString& bottle, const QString& programId);
    /// The shortcuts added since the time; empty on every failure.
    QJsonArray scanApplicationLinks(const QString& bottle, const QDateTime& since, QObject* owner = nullptr);
    /// The same without a wait.
    void watchApplicationLinks(const QString& bottle, const QDateTime& since, QObject* context,
                               const Handler& handler);
    BusResult createDesktopEntry(const QString& bottle, const QString& programId);
    void killProgram(const QString& bottle, const QString& programId);
    void killWineServer(const QString& bottle, QObject* context = nullptr, const Handler& handler = {});
    void runCommand(const QString& bottle, const QString& commandLine);
    void exportFileAssociations(const QString& bottle, const QStringList& keys);

    // Questions with JSON text as argument.
    BusResult dumpManifest(const QString& json);
    BusResult checkPublicBottles(const QString& json);

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
    BottlesConfig();

    void forgetFileInfo(const QString& bottle, const QString& programId);
    void fireOrWatch(const QString& method, const QVariantList& arguments, QObject* context,
                     const Handler& handler);
    void onDependencySetupDone(const QString& bottleName, const QString& dependencyName,
                               const QString& result);
};
