#include <QTimer>
#include <QtTest>

#include "backend/PendingWork.h"
#include "core/CellarixApplication.h"
#include "e2e/InstalledApp.h"
#include "shell/Mainwindow.h"
#include "support/FakeBottleService.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {

Mainwindow* mainWindow() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = qobject_cast<Mainwindow*>(widget); window && window->isVisible())
            return window;
    }
    return nullptr;
}

}  // namespace

/// When the application ends its event loop, with a fake service.
class LifeTest : public QObject {
    Q_OBJECT

    CellarixApplication& m_application;
    FakeBottleService m_service;
    PendingWork::Hold m_hold;

    /// Runs the event loop and carries out each step once its condition holds. True when all were carried out
    /// before the loop ended.
    bool run(const QList<QPair<std::function<bool()>, std::function<void()>>>& steps) {
        int next = 0;
        QTimer poll;
        const QDeadlineTimer end(30000);
        connect(&poll, &QTimer::timeout, this, [&] {
            if (next < steps.size() && steps[next].first())
                steps[next++].second();
            if (end.hasExpired())
                QCoreApplication::exit(1);
        });
        poll.start(10);
        return QCoreApplication::exec() == 0 && next == steps.size();
    }

public:
    explicit LifeTest(CellarixApplication* application) : m_application(*application) {}

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_service.start());
        InstalledApp::acceptAgreement();
    }
    void init() { m_hold = PendingWork::instance()->hold(); }

    /// The end of work that was pending when the user left must not close a window opened since.
    void leavingEndsWithANewWindow_data() {
        QTest::addColumn<bool>("byMenu");
        QTest::newRow("quit") << true;
        QTest::newRow("last window") << false;
    }
    void leavingEndsWithANewWindow() {
        QFETCH(bool, byMenu);
        const auto always = [] { return true; };
        const auto isShown = [] { return mainWindow() != nullptr; };
        const auto leave = [this, byMenu] {
            if (byMenu)
                m_application.handleQuitAction();
            else
                mainWindow()->close();
        };
        m_application.showMainWindow();
        QVERIFY(run({{isShown, leave},
                     {[&] { return !isShown(); }, [this] { m_application.requestMainWindow(); }},
                     {isShown, [this] { m_hold.reset(); }},
                     {always, [this] { m_hold = PendingWork::instance()->hold(); }},
                     {isShown, leave},
                     {[&] { return !isShown(); }, [this] { m_hold.reset(); }}}));
    }

    /// Its timer is shortened.
    void leavingHasALimit() {
        m_application.showMainWindow();
        const auto limit = [this] {
            for (auto* timer : m_application.findChildren<QTimer*>()) {
                if (timer->interval() == 120000 && timer->isActive())
                    timer->start(0);
            }
        };
        QVERIFY(run({{[] { return true; }, [] { mainWindow()->close(); }}, {[] { return true; }, limit}}));
    }
};

int main(int argc, char** argv) {
    const TestHome home;
    const PrivateBus bus;
    CellarixApplication application(argc, argv);
    QCoreApplication::setOrganizationName("lumora");
    QCoreApplication::setApplicationName("cellarix");
    LifeTest test(&application);
    return QTest::qExec(&test, argc, argv);
}

#include "LifeTest.moc"
