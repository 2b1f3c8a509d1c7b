#include "bottleservice/BottleService.h"

#include <algorithm>

#include "bottleservice/requests/BottleRecovery.h"
#include "bottleservice/wire/DesktopMethods.h"
#include "bottleservice/wire/ProcessMethods.h"
#include "bottleservice/wire/ProgramMethods.h"
#include "bottleservice/wire/SettingsMethods.h"

BottleService::BottleService(const QString& dataDir, const QString& version)
    : m_engine(dataDir),
      m_bottles(&m_engine),
      m_programs(&m_engine, CELLARIX_ICON_EXTRACTOR),
      m_processes(&m_engine),
      m_settings(&m_engine),
      m_desktop(&m_engine, &m_bottles, &m_programs, CELLARIX_COMMAND, CELLARIX_ICON_EXTRACTOR),
      m_downloads(dataDir),
      m_components(&m_engine, &m_downloads, CELLARIX_CATALOGUE),
      m_bottleComponents(&m_engine, &m_components),
      m_cleanUps(&m_engine, &m_bottles, &m_programs),
      m_templates(&m_engine),
      m_bottleRepairs(&m_engine),
      m_dependencies(&m_engine, &m_downloads, CELLARIX_CATALOGUE),
      m_repairOffers(&m_engine, &m_downloads, &m_dependencies),
      m_setups(&m_engine, &m_downloads, &m_components, &m_cleanUps, CELLARIX_CATALOGUE),
      m_offline(&m_engine, &m_downloads, &m_dependencies),
      m_backups(&m_engine),
      m_bottlesObject(&m_bottles),
      m_componentsObject(&m_components),
      m_templatesObject(&m_templates),
      m_cleanUpObject(&m_cleanUps),
      m_programsObject(&m_processes),
      m_repairObject(&m_repairOffers, &m_bottleRepairs, &m_dependencies),
      m_installerObject(&m_setups),
      m_offlineObject(&m_offline),
      m_backupObject(&m_backups),
      m_managerObject(version),
      m_objects{&m_bottlesObject,  &m_componentsObject, &m_templatesObject, &m_cleanUpObject,
                &m_programsObject, &m_repairObject,     &m_installerObject, &m_offlineObject,
                &m_backupObject,   &m_managerObject} {
    connectRequests();
    addMethods();
    BottleRecovery::run(&m_engine);
    m_settings.recover();
    m_desktop.recover();
    m_repairOffers.recover();
    m_offline.recover();
    m_backups.recover();
}

void BottleService::connectRequests() {
    connect(&m_processes, &ProcessRequests::programExited, &m_desktop, &DesktopRequests::collectAssociations);
    for (const auto changed : {&ProgramRequests::programAdded, &ProgramRequests::programUpdated})
        connect(&m_programs, changed, &m_processes, &ProcessRequests::onProgramsChanged);
    connect(&m_programs, &ProgramRequests::programDeleted, &m_processes, &ProcessRequests::onProgramsChanged);
    connect(&m_bottles, &BottleRequests::aboutToDelete, this, [this](const QString& bottle) {
        m_bottleComponents.cancelAll(bottle);
        m_bottleRepairs.cancelAll(bottle);
        m_setups.cancelForDeletion(bottle);
        m_offline.cancelForDeletion(bottle);
        m_dependencies.cancelAll(bottle);
    });
    connect(&m_setups, &SetupRequests::succeeded, &m_programs, &ProgramRequests::announce);
    connect(&m_backups, &BackupRequests::bottleMade, &m_programs, &ProgramRequests::announce);
    connect(&m_engine, &BottleEngine::closed, this, &BottleService::closed);
}

void BottleService::addMethods() {
    addProgramMethods(&m_bottlesObject, &m_programs);
    addDesktopMethods(&m_bottlesObject, &m_desktop);
    addProcessMethods(&m_bottlesObject, &m_processes);
    addSettingsMethods(&m_bottlesObject, &m_settings);
    addComponentMethods(&m_bottlesObject, &m_bottleComponents);
    addDependencyMethods(&m_bottlesObject, &m_dependencies);
    for (const BusObject* object : m_objects)
        connect(object, &BusObject::called, this, &BottleService::called);
    connect(&m_managerObject, &ManagerObject::quitRequested, this, &BottleService::quitRequested);
}

bool BottleService::registerOn(const QDBusConnection& bus) {
    return std::all_of(m_objects.begin(), m_objects.end(),
                       [&bus](BusObject* object) { return object->registerOn(bus); });
}

bool BottleService::areRequestsDone() const {
    return m_programs.isIdle() && m_desktop.isIdle() && m_components.isIdle() &&
           m_bottleComponents.isIdle() && m_dependencies.isIdle() && m_repairOffers.isIdle() &&
           m_setups.isIdle() && m_offline.isIdle() && m_backups.isIdle();
}

void BottleService::closeSetups() {
    m_setups.close();
}

void BottleService::close() {
    closeSetups();
    m_components.close();
    m_offline.close();
    m_dependencies.close();
    m_repairOffers.close();
    m_engine.close();
}
