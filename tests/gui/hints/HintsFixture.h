#pragma once

#include <QAbstractButton>
#include <QDir>
#include <QJsonDocument>
#include <QPointer>
#include <QSignalSpy>
#include <QtTest>
#include <memory>

#include "fenk/style/Theme.h"
#include "shell/configuration/hints/DebuggingLogsEdit.h"
#include "shell/configuration/hints/DebuggingLogsView.h"
#include "shell/configuration/page/BottlesConfigView.h"
#include "shell/configuration/page/ConfigPages.h"
#include "shell/configuration/page/DebuggingLogsFrame.h"
#include "support/FakeBottleService.h"
#include "support/StandInBottle.h"
#include "support/TestHome.h"

/// The configuration window of a bottle with one program, over a fake service and with the real launch
/// script, whose Wine does as it is told.
struct HintsFixture {
    static constexpr const char* Bottle = "office";
    static constexpr const char* Id = "0b6e6f9e-0000-4000-8000-000000000001";

    TestSupport::TestHome m_home;
    std::unique_ptr<TestSupport::FakeBottleService> m_service;
    TestSupport::StandInBottle m_bottle;
    QPointer<BottlesConfigView> m_view;
    QJsonObject m_program;

    void setBottle(const QString& runner) {
        m_service->setBottle(Bottle, {{"Path", m_bottle.directory()},
                                      {"Runner", runner},
                                      {"Parameters", QJsonObject{{"renderer", "gl"}}},
                                      {"External_Programs", QJsonObject{{Id, m_program}}}});
    }
    void open() {
        m_view = new BottlesConfigView;
        QSignalSpy loaded(m_view, &BottlesConfigView::bottlesLoaded);
        m_view->loadBottle(Bottle);
        m_view->show();
        QVERIFY(QTest::qWaitForWindowActive(m_view));
        QTRY_COMPARE(loaded.count(), 1);
    }
    template <class Widget = QWidget>
    Widget* find(const QString& name) const {
        return m_view->findChild<Widget*>(name);
    }
    DebuggingLogsFrame* frame() const { return m_view->findChild<DebuggingLogsFrame*>(); }
    DebuggingLogsView* hints() const { return frame()->hints(); }
    QStringList lines() const { return frame()->log()->lastLines(1000); }
    QString shownPage() const {
        for (const QAbstractButton* button :
             m_view->findChild<ConfigPages*>()->findChildren<QAbstractButton*>()) {
            if (button->isCheckable() && button->isChecked() && button->group())
                return button->text();
        }
        return {};
    }
    void startService() {
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start(true));
        m_service->setJson(
            "Components.list",
            QJsonObject{{"runner", QJsonObject{{"installed", QJsonArray{"wine"}},
                                               {"supported", QJsonArray{"lumora-wine-staging"}}}}});
        QVERIFY(m_service->takeName());
    }
    void makeBottle() {
        m_service->clearCalls();
        m_bottle = TestSupport::StandInBottle(m_home.data(), Bottle);
        m_bottle.write("program", "exit 3");
        const QJsonObject program{{"id", Id}, {"name", "Notes"}, {"path", "C:\\notes.exe"}};
        const QString wine = m_bottle.directory() + "/wine";
        m_bottle.write("launch.json", QJsonDocument(QJsonObject{{"version", 1},
                                                                {"source", QJsonObject()},
                                                                {"wine", wine},
                                                                {"programs", QJsonObject{{Id, program}}}})
                                          .toJson());
        m_bottle.write("drive_c/notes.exe", "MZ");
        QDir(m_bottle.directory()).mkdir("dosdevices");
        QDir(m_bottle.directory()).mkdir("logs");
        QVERIFY(QFile::link("../drive_c", m_bottle.directory() + "/dosdevices/c:"));
        m_program = program;
        setBottle("wine");
    }
    void closeWindow() {
        m_bottle.write("close", "");
        delete m_view;
    }
};
