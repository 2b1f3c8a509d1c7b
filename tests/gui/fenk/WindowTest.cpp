#include <QCheckBox>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>

#include "FenkTestMain.h"
#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/window/AboutDialog.h"
#include "fenk/window/MainWindow.h"
#include "fenk/window/TitleBar.h"
#include "fenk/window/WindowFrame.h"
#include "support/KeyWalk.h"

using namespace Fenk;

namespace {

struct SampleWindow : MainWindow {
    SampleWindow() { resize(640, 480); }
    IconButton* button(const char* name) const { return titlebar()->findChild<IconButton*>(name); }
    void click(const char* name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    void doubleClick() const { QTest::mouseDClick(titlebar(), Qt::LeftButton, {}, QPoint(80, 20)); }
    Qt::Edges edgesAt(const QPoint& at) const { return findChild<WindowFrame*>()->edgesAt(at); }
};

QAction* action(QMenu* menu, const QString& text) {
    for (QAction* candidate : menu->actions()) {
        if (candidate->text() == text)
            return candidate;
    }
    return nullptr;
}

}  // namespace

class WindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void buttonsDoTheirWork() {
        SampleWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.click("titlebar_maximize");
        QTRY_VERIFY(window.isMaximized());
        QCOMPARE(window.button("titlebar_maximize")->accessibleName(), QString("Restore"));
        window.click("titlebar_maximize");
        QTRY_VERIFY(!window.isMaximized());
        window.doubleClick();
        QTRY_VERIFY(window.isMaximized());
        window.doubleClick();
        window.click("titlebar_minimize");
        QTRY_VERIFY(window.isMinimized());
        window.showNormal();
        window.click("titlebar_close");
        QTRY_VERIFY(!window.isVisible());
    }

    void fixedWindowsAreExactAndStay() {
        SampleWindow window;
        window.setFixedSize(660, 432);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(window.frameGeometry().size(), QSize(660, 432));
        QVERIFY(!window.button("titlebar_maximize")->isVisible());
        window.doubleClick();
        QVERIFY(!window.isMaximized());
        QCOMPARE(window.edgesAt({0, 200}), Qt::Edges());
    }

    void edgesResize() {
        const SampleWindow window;
        QCOMPARE(window.edgesAt({1, 200}), Qt::Edges(Qt::LeftEdge));
        QCOMPARE(window.edgesAt({300, 2}), Qt::Edges(Qt::TopEdge));
        QCOMPARE(window.edgesAt({638, 478}), Qt::BottomEdge | Qt::RightEdge);
        QCOMPARE(window.edgesAt({300, 200}), Qt::Edges());
    }

    void customWidgetStaysInTheMiddle() {
        MainWindow window;
        window.setFixedSize(950, 700);
        auto* search = new QWidget;
        search->setMinimumSize(350, 36);
        window.titlebar()->setCustomWidget(search);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QVERIFY(qAbs(search->geometry().center().x() - window.titlebar()->rect().center().x()) <= 1);
        QCOMPARE(search->width(), 350);
        QVERIFY(window.titlebar()->rect().contains(search->geometry()));
    }

    void keysOpenTheMenuAndPressButtons() {
        SampleWindow window;
        auto* row = new QWidget;
        auto* push = new QPushButton("Push", row);
        auto* box = new QCheckBox("Check", row);
        window.setCentralWidget(row);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QVERIFY2(window.hasFocus(), "no button has the focus unasked");
        QMenu* menu = window.titlebar()->menu();
        QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, {});
        for (const bool f10 : {true, false}) {
            if (f10)
                QTest::keyClick(window.windowHandle(), Qt::Key_F10);
            else
                QCoreApplication::sendEvent(&window, &menuKey);
            QTRY_VERIFY(menu->isVisible());
            QCOMPARE(menu->activeAction(), menu->actions().first());
            QTest::keyClick(menu, Qt::Key_Escape);
            QTRY_VERIFY(!menu->isVisible());
            QVERIFY(window.hasFocus());
        }
        QSignalSpy pressed(push, &QPushButton::clicked);
        push->setFocus();
        for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space})
            QTest::keyClick(window.windowHandle(), Qt::Key(key));
        QCOMPARE(pressed.count(), 3);
        box->setFocus();
        QTest::keyClick(window.windowHandle(), Qt::Key_Return);
        QVERIFY(!box->isChecked());
        window.titlebar()->setMenuVisible(false);
        QTest::keyClick(window.windowHandle(), Qt::Key_F10);
        QVERIFY(!menu->isVisible());
    }

    void programsMenuEndsWithTheStandardEntries() {
        MainWindow window;
        auto* menu = new QMenu;
        menu->addAction("Forums");
        window.titlebar()->setMenu(menu);
        QCOMPARE(window.titlebar()->menu(), menu);
        QCOMPARE(menu->actions().first()->text(), QString("Forums"));
        QCOMPARE(menu->actions().last()->text(), QString("Exit"));
        QMenu* themes = action(menu, "Theme")->menu();
        QMetaObject::invokeMethod(themes, "aboutToShow");
        QVERIFY(action(themes, "System theme")->isChecked());
        action(themes, "Dark")->trigger();
        QVERIFY(Theme::instance()->isDark());
        action(themes, "System theme")->trigger();
        QVERIFY(Theme::instance()->followsSystem());
    }

    void aboutTellsTheFacts() {
        auto* app = qobject_cast<Application*>(qApp);
        app->setProductName("Sample <b>");
        app->setApplicationVersion("1.2.3");
        app->setApplicationDescription("What it is for");
        app->setAboutLink("<a href=\"file:///x\">Agreement</a>");
        app->handleAboutAction();
        app->handleAboutAction();  // shows the same one
        QList<QPointer<AboutDialog>> dialogs;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* dialog = qobject_cast<AboutDialog*>(widget))
                dialogs << dialog;
        }
        QCOMPARE(dialogs.size(), 1);
        const QPointer<AboutDialog> about = dialogs.first();
        QStringList texts;
        for (const Label* label : about->findChildren<Label*>())
            texts << label->text();
        for (const char* expected : {"Sample <b>", "Version 1.2.3", "What it is for"})
            QVERIFY2(texts.contains(expected), expected);
        QVERIFY(QTest::qWaitForWindowActive(about));
        QCOMPARE(TestSupport::outOfReach(about), QString());
        TestSupport::press(about, Qt::Key_Escape);
        QTRY_VERIFY(!about);
    }

    void translationsFallBackToTheLanguage() {
        auto* app = qobject_cast<Application*>(qApp);
        app->setTranslationsDir(QDir::tempPath() + "/no-such-directory");
        QVERIFY(app->loadTranslator({QLocale("en_GB")}));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("No translation of .* in .*"));
        QVERIFY(!app->loadTranslator({QLocale("zh_CN")}));
    }
};

FENK_TEST_MAIN(WindowTest)
#include "WindowTest.moc"
