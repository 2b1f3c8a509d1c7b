#pragma once

#include <QAbstractButton>
#include <QSignalSpy>
#include <QtTest>
#include <memory>

#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "fenk/window/Dialog.h"
#include "launch/LaunchWindows.h"
#include "programs/RunStateButton.h"
#include "shell/IndexView.h"
#include "shell/Mainwindow.h"
#include "shell/library/AppLocalView.h"
#include "shell/library/LocalAppItemWidget.h"
#include "shell/library/ProgramGrid.h"
#include "shell/library/ProgramLibrary.h"
#include "support/FakeBottleService.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

/// A fake service, and the main window over it.
class LibraryFixture : public QObject {
    Q_OBJECT
protected:
    using State = ProgramLibrary::State;

    static QJsonObject summary(const QString& uuid, const QString& name) {
        return {{"bottle_name", "office"}, {"uuid", uuid}, {"name", name}};
    }
    AppLocalView* view() const { return m_window->indexView()->localView(); }
    LocalAppItemWidget* tile(const QString& uuid) const {
        return view()->shownGrid()->tile({"office", uuid});
    }
    RunStateButton* runButton(const QString& uuid) const { return tile(uuid)->findChild<RunStateButton*>(); }
    Fenk::Dialog* question() const { return m_window->findChild<Fenk::Dialog*>("removal_question"); }

    void setBottle(const QStringList& uuids, const QString& path = {}) {
        QJsonObject records;
        for (const QString& uuid : uuids)
            records.insert(uuid, QJsonObject{{"name", uuid}});
        m_service->setBottle("office", {{"Path", path}, {"Runner", "wine"}, {"External_Programs", records}});
    }
    void open(const QJsonArray& programs) {
        m_service->setJson("listAllPrograms", programs);
        openUntil(State::Ready);
    }
    void openUntil(State state) {
        m_window = std::make_unique<Mainwindow>();
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTRY_VERIFY(view() && view()->library()->state() == state);
    }
    void press(int key) { QTest::keyClick(QApplication::focusWidget(), Qt::Key(key)); }

    TestSupport::TestHome m_home;
    std::unique_ptr<TestSupport::FakeBottleService> m_service;
    std::unique_ptr<Mainwindow> m_window;

protected Q_SLOTS:
    void init() {
        QApplication::setDoubleClickInterval(0);  // the tests click as fast as they can
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start());
    }
    void cleanup() {
        m_window.reset();
        m_service.reset();
        LaunchWindows::instance() = {};
    }
};

template <class Test>
int runWindowTest(int argc, char** argv) {
    const TestSupport::PrivateBus bus;  // before the application, which connects to it
    Fenk::Application app(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}
