#pragma once

#include <QCoreApplication>
#include <QDir>
#include <memory>

#include "backend/ComponentManager.h"
#include "support/FakeBottleService.h"
#include "support/PrivateBus.h"
#include "support/StandInBottle.h"
#include "support/TestHome.h"

/// A home, a bus, a service that does as it is told, and a bottle whose Wine does, too.
struct LaunchFixture {
    static constexpr int LaunchMs = 30000;

    TestSupport::TestHome m_home;
    TestSupport::PrivateBus m_bus;
    std::unique_ptr<TestSupport::FakeBottleService> m_service;
    TestSupport::StandInBottle m_standIn;
    QString m_bottle;

    bool startService() {
        QDir(m_home.data() + "/lumora-wine-bottles").removeRecursively();
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        const bool isStarted = m_service->start();
        ComponentManager::instance()->runnerInstalled.clear();
        ComponentManager::instance()->runnerSupported.clear();
        return isStarted;
    }
    /// Also lets the program of the bottle end. What launches has to go before.
    void stopService() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_standIn.write("close", "");
        m_service.reset();
    }
    void makeBottle(const QString& name, QJsonObject record = {}) {
        m_bottle = name;
        m_standIn = TestSupport::StandInBottle(m_home.data(), name);
        record["Path"] = m_standIn.directory();
        m_service->setBottle(name, record);
        m_service->setJson("Bottles.list", QJsonArray{name});
        m_service->setText("checkPublicBottles", name.startsWith("public/") ? name : "");
    }
};
