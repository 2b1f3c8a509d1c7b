#pragma once

#include <QDBusConnection>
#include <QObject>
#include <vector>

#include "bottleservice/components/Downloads.h"
#include "bottleservice/requests/BackupRequests.h"
#include "bottleservice/requests/BottleComponentRequests.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/BottleRepairRequests.h"
#include "bottleservice/requests/BottleRequests.h"
#include "bottleservice/requests/CleanUpRequests.h"
#include "bottleservice/requests/ComponentRequests.h"
#include "bottleservice/requests/DependencyRequests.h"
#include "bottleservice/requests/DesktopRequests.h"
#include "bottleservice/requests/OfflineRequests.h"
#include "bottleservice/requests/ProcessRequests.h"
#include "bottleservice/requests/ProgramRequests.h"
#include "bottleservice/requests/RepairOfferRequests.h"
#include "bottleservice/requests/SettingsRequests.h"
#include "bottleservice/requests/SetupRequests.h"
#include "bottleservice/requests/TemplateRequests.h"
#include "bottleservice/wire/BackupObject.h"
#include "bottleservice/wire/BottlesObject.h"
#include "bottleservice/wire/CleanUpObject.h"
#include "bottleservice/wire/ComponentMethods.h"
#include "bottleservice/wire/InstallerObject.h"
#include "bottleservice/wire/ManagerObject.h"
#include "bottleservice/wire/OfflineObject.h"
#include "bottleservice/wire/ProgramsObject.h"
#include "bottleservice/wire/RepairObject.h"
#include "bottleservice/wire/TemplatesObject.h"

/// The engine, all families of requests, and the bus objects that call them. The constructor recovers what an
/// earlier service has left unfinished; the caller must hold the data directory's lock. Lives in the main
/// thread.
class BottleService : public QObject {
    Q_OBJECT

public:
    BottleService(const QString& dataDir, const QString& version);

    /// Puts all objects on the bus. False when a path is taken.
    bool registerOn(const QDBusConnection& bus);
    /// Starts following running programs. After registerOn(), so that clients get the signals.
    void watchPrograms() { m_processes.watchPrograms(); }

    BottleEngine* engine() { return &m_engine; }
    /// Every request has been carried out.
    bool isDone() const { return m_engine.isIdle() && areRequestsDone(); }
    /// The same, and no program runs whose end has to be told.
    bool isIdle() const { return isDone() && m_processes.isIdle(); }
    /// Nobody waits for anything and no program runs.
    bool isQuiet() const { return m_engine.isQuiet() && areRequestsDone() && m_processes.isIdle(); }

    /// Ends the set-ups of bottles: their signals are sent.
    void closeSetups();
    /// Cancels running work and accepts no new requests; closed() follows.
    void close();

Q_SIGNALS:
    /// A method was called.
    void called();
    void quitRequested();
    void closed();

private:
    void connectRequests();
    void addMethods();
    bool areRequestsDone() const;

    BottleEngine m_engine;
    BottleRequests m_bottles;
    ProgramRequests m_programs;
    ProcessRequests m_processes;
    SettingsRequests m_settings;
    DesktopRequests m_desktop;
    Downloads m_downloads;
    ComponentRequests m_components;
    BottleComponentRequests m_bottleComponents;
    CleanUpRequests m_cleanUps;
    TemplateRequests m_templates;
    BottleRepairRequests m_bottleRepairs;
    DependencyRequests m_dependencies;
    RepairOfferRequests m_repairOffers;
    SetupRequests m_setups;
    OfflineRequests m_offline;
    BackupRequests m_backups;

    BottlesObject m_bottlesObject;
    ComponentsObject m_componentsObject;
    TemplatesObject m_templatesObject;
    CleanUpObject m_cleanUpObject;
    ProgramsObject m_programsObject;
    RepairObject m_repairObject;
    InstallerObject m_installerObject;
    OfflineObject m_offlineObject;
    BackupObject m_backupObject;
    ManagerObject m_managerObject;
    std::vector<BusObject*> m_objects;
};
