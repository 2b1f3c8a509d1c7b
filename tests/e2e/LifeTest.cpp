#include <QAbstractButton>
#include <QTimer>
#include <QtTest>

#include "backend/PendingWork.h"
#include "core/CellarixApplication.h"
#include "core/base/SettingsStore.h"
#include "e2e/InstalledApp.h"
#include "fenk/window/Dialog.h"
#include "shell/Mainwindow.h"
#include "support/FakeBottleService.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {

template <class Window>
Window* visible() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = qobject_cast<Window*>(widget); window && window->isVisible())
            return window;
    }
    return nullptr;
}

}  // namespace

/// When the application object ends its event loop, with a service that does not answer.
class LifeTest : public QObject {
    Q_OBJECT

    CellarixApplication& m_application;
    FakeBottleService m_service;
    PendingWork::Hold m_hold;

    /// Carries out the steps in the running loop, each when its condition holds. True when all of them came
    /// to their turn before the loop ended.
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

    /// Work that was pending when the user left must not end what the user has begun since.
    void leavingEndsWithANewWindow_data() {
        QTest::addColumn<bool>("byMenu");
        QTest::newRow("quit") << true;
        QTest::newRow("last window") << false;
    }
    void leavingEndsWithANewWindow() {
        QFETCH(bool, byMenu);
        const auto always = [] { return true; };
        const auto isShown = [] { return visible<Mainwindow>() != nullptr; };
        const auto leave = [this, byMenu] {
            if (byMenu)
                m_application.handleQuitAction();
            else
                visible<Mainwindow>()->close();
        };
        m_application.showMainWindow();
        QVERIFY(run({{isShown, leave},
                     {[&] { return !isShown(); }, [this] { m_application.requestMainWindow(); }},
                     {isShown, [this] { m_hold.reset(); }},
                     {always, [this] { m_hold = PendingWork::instance()->hold(); }},
                     {isShown, leave},
                     {[&] { return !isShown(); }, [this] { m_hold.reset(); }}}));
    }

    void leavingHasALimit() {
        m_application.showMainWindow();
        const auto limit = [this] {
            for (auto* timer : m_application.findChildren<QTimer*>()) {
                if (timer->interval() == 120000 && timer->isActive())
                    timer->start(0);
            }
        };
        QVERIFY(run(
            {{[] { return true; }, [] { visible<Mainwindow>()->close(); }}, {[] { return true; }, limit}}));
    }

    /// The dialog's window is the only one, and it closes under the start that follows.
    void dialogsOfAStartAreNotTheLastWindow() {
        const auto isAsked = [] { return visible<Fenk::Dialog>() != nullptr; };
        const auto agree = [] {
            for (auto* button : visible<Fenk::Dialog>()->findChildren<QAbstractButton*>()) {
                if (button->text().contains("Agree"))
                    button->click();
            }
        };
        m_hold.reset();
        QCOMPARE(m_application.handleCommandLine({"cellarix", "--service"}), 0);
        settingsStore()->setOption("basic.update_log.version", "");
        QTimer::singleShot(0, &m_application, [this] { m_application.handleCommandLine({"cellarix"}); });
        QVERIFY(run({{isAsked, agree},
                     {[] { return visible<Mainwindow>() != nullptr; }, [] {}},
                     {[] { return true; }, [] { visible<Mainwindow>()->close(); }}}));
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
