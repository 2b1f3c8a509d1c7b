#pragma once

#include <QComboBox>
#include <QJsonDocument>
#include <QLabel>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>
#include <memory>

#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "fenk/window/Dialog.h"
#include "shell/configuration/page/AppEntryButton.h"
#include "shell/configuration/page/BottlesConfigView.h"
#include "shell/configuration/page/ComponentsSwitcherWidget.h"
#include "support/FakeBottleService.h"
#include "support/KeyWalk.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::RecordedCall;
using TestSupport::Table;

/// The configuration window of the bottle "office" over a fake service.
class ConfigurationFixture : public QObject {
    Q_OBJECT
protected:
    TestSupport::TestHome m_home;
    std::unique_ptr<TestSupport::FakeBottleService> m_service;
    QPointer<BottlesConfigView> m_view;

    void startService() {
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start(true));
        m_service->setJson(
            "Components.list",
            QJsonObject{{"runner", QJsonObject{{"installed", QJsonArray{"wine", "ge-proton9"}}}},
                        {"dxvk", QJsonObject{{"supported", QJsonArray{"dxvk-1", "dxvk-2"}}}}});
        QVERIFY(m_service->takeName());
    }
    void setBottle(const QStringList& programs, QJsonObject record = {}) {
        QJsonObject entries;
        for (const QString& id : programs)
            entries.insert(id, QJsonObject{{"name", "Program " + id}, {"path", "C:\\" + id + ".exe"}});
        record.insert("Path", m_home.path());
        record.insert("External_Programs", entries);
        for (const auto& [key, value] : {std::pair{"Runner", "wine"}, {"Windows", "win10"}}) {
            if (!record.contains(key))
                record.insert(key, value);
        }
        if (!record.contains("Parameters"))
            record.insert("Parameters", QJsonObject{{"custom_dpi", 96}, {"renderer", "gl"}});
        m_service->setBottle("office", record);
    }
    void open() {
        m_view = new BottlesConfigView;
        QSignalSpy loaded(m_view, &BottlesConfigView::bottlesLoaded);
        m_view->loadBottle("office");
        m_view->show();
        QVERIFY(QTest::qWaitForWindowActive(m_view));
        QTRY_COMPARE(loaded.count(), 1);
    }
    template <class Widget = QWidget>
    Widget* find(const QString& name) const {
        return m_view->findChild<Widget*>(name);
    }
    ComponentsSwitcherWidget* dxvk() const {
        return find<ComponentsSwitcherWidget>("dxvk_versions_combobox");
    }
    void activate(QComboBox* combo, int index) {
        combo->setCurrentIndex(index);
        Q_EMIT combo->activated(index);
    }
    bool tell(const QString& signal, const QString& name, const QString& kind = "dxvk",
              const QString& bottle = "office") {
        return m_service->emitSignal(signal, "sss", {bottle, kind, name});
    }
    bool tellDone(const QString& name, const QString& result) {
        return m_service->emitSignal("component_setup_done", "ssss", {"office", "dxvk", name, result});
    }
    QString tips() const { return dxvk()->findChild<QLabel*>("tips_label")->text(); }
    QStringList settingCalls() {
        QStringList methods;
        for (const RecordedCall& call : m_service->calls()) {
            if (call.method.startsWith("set"))
                methods << call.method;
        }
        return methods;
    }
    QVector<AppEntryButton*> entries() const { return m_view->findChildren<AppEntryButton*>().toVector(); }
    void chooseDxvk() {
        activate(dxvk()->combo(), 2);
        QCOMPARE(m_service->waitForCall("setDxvk").arguments, QJsonArray({"office", "dxvk-2", true}));
    }

private Q_SLOTS:
    void init() {
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        startService();
    }
    void cleanup() {
        delete m_view;
        m_service.reset();
    }
};
