#include <QMenu>
#include <QSignalSpy>

#include "FenkTestMain.h"
#include "fenk/AboutDialog.h"
#include "fenk/IconButton.h"
#include "fenk/Label.h"
#include "fenk/MainWindow.h"
#include "fenk/Theme.h"
#include "fenk/TitleBar.h"
#include "fenk/Tokens.h"
#include "fenk/WindowFrame.h"

using namespace Fenk;

namespace {

IconButton* button(MainWindow& window, const char* name) {
    return window.titlebar()->findChild<IconButton*>(name);
}

QAction* action(QMenu* menu, const QString& text) {
    for (QAction* candidate : menu->actions()) {
        if (candidate->text() == text)
            return candidate;
    }
    return nullptr;
}

}  // namespace

class TestWindow : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void buttonsDoTheirWork() {
        MainWindow window;
        window.resize(640, 480);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTest::mouseClick(button(window, "titlebar_maximize"), Qt::LeftButton);
        QTRY_VERIFY(window.isMaximized());
        QCOMPARE(button(window, "titlebar_maximize")->accessibleName(), QString("Restore"));
        QTest::mouseClick(button(window, "titlebar_maximize"), Qt::LeftButton);
        QTRY_VERIFY(!window.isMaximized());
        QTest::mouseDClick(window.titlebar(), Qt::LeftButton, {}, QPoint(80, 20));
        QTRY_VERIFY(window.isMaximized());
        QTest::mouseDClick(window.titlebar(), Qt::LeftButton, {}, QPoint(80, 20));
        QTest::mouseClick(button(window, "titlebar_minimize"), Qt::LeftButton);
        QTRY_VERIFY(window.isMinimized());
        window.showNormal();
        QTest::mouseClick(button(window, "titlebar_close"), Qt::LeftButton);
        QTRY_VERIFY(!window.isVisible());
    }

    void fixedWindowsAreExactAndStay() {
        MainWindow window;
        window.setFixedSize(660, 432);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(window.frameGeometry().size(), QSize(660, 432));
        QVERIFY(!button(window, "titlebar_maximize")->isVisible());
        QTest::mouseDClick(window.titlebar(), Qt::LeftButton, {}, QPoint(80, 20));
        QVERIFY(!window.isMaximized());
        QCOMPARE(window.findChild<WindowFrame*>()->edgesAt({0, 200}), Qt::Edges());
    }

    void edgesResize_data() {
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<int>("edges");
        QTest::newRow("left") << QPoint(1, 200) << int(Qt::LeftEdge);
        QTest::newRow("bottom right") << QPoint(638, 478) << int(Qt::BottomEdge | Qt::RightEdge);
        QTest::newRow("top") << QPoint(300, 2) << int(Qt::TopEdge);
        QTest::newRow("inside") << QPoint(300, 200) << 0;
    }
    void edgesResize() {
        QFETCH(QPoint, at);
        QFETCH(int, edges);
        MainWindow window;
        window.resize(640, 480);
        QCOMPARE(int(window.findChild<WindowFrame*>()->edgesAt(at)), edges);
    }

    void disabledFlagsHideButtons() {
        MainWindow window;
        window.resize(640, 480);
        window.titlebar()->setDisableFlags(Qt::WindowMaximizeButtonHint | Qt::CustomizeWindowHint);
        window.show();
        QVERIFY(!button(window, "titlebar_maximize")->isVisible());
        QVERIFY(button(window, "titlebar_minimize")->isVisible());
        window.titlebar()->setMenuVisible(false);
        QVERIFY(!button(window, "titlebar_menu")->isVisible());
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
        app->handleAboutAction();
        QPointer<AboutDialog> about;
        int open = 0;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* candidate = qobject_cast<AboutDialog*>(widget)) {
                about = candidate;
                ++open;
            }
        }
        QCOMPARE(open, 1);
        QStringList texts;
        for (const Label* label : about->findChildren<Label*>())
            texts << label->text();
        for (const char* expected : {"Sample <b>", "Version 1.2.3", "What it is for"})
            QVERIFY2(texts.contains(expected), expected);
        about->close();
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

FENK_TEST_MAIN(TestWindow)
#include "tst_window.moc"
