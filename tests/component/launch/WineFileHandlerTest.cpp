#include "launch/open/WineFileHandler.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>

#include "launch/banner/WineExeLaunchBanner.h"
#include "launch/open/FileAssociation.h"
#include "support/FakeBottleService.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace TestSupport;

/// Documents are opened with the real launch script and a Wine that writes down its arguments.
class WineFileHandlerTest : public QObject {
    Q_OBJECT

    TestHome m_home;
    PrivateBus m_bus;
    FakeBottleService m_service;
    const QString m_bottle = m_home.data() + "/lumora-wine-bottles/bottles/b";

    QByteArray calls() const { return readFile(m_bottle + "/calls"); }
    static QStringList shown() {
        QStringList descriptions;
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && qobject_cast<WineExeLaunchBanner*>(window)) {
                for (const QLabel* label : window->findChildren<QLabel*>())
                    descriptions << label->text();
            }
        }
        return descriptions.filter("...");
    }
    static void confirmClose() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && qobject_cast<WineExeLaunchBanner*>(window))
                QVERIFY(!window->close());
        }
        for (QWidget* widget : QApplication::allWidgets()) {
            if (widget->accessibleName() == "close_btn" && widget->isVisible())
                qobject_cast<QAbstractButton*>(widget)->click();
        }
    }

private Q_SLOTS:
    void associations_data() {
        // expected: ProgID and name; empty when nothing is found
        const Table<QByteArray, QString> row("text", "expected");
        row("broken", R"({".x":{"progid":"p"})", "");
        row("array", R"([{".x":{"progid":"p"}}])", "");
        row("too large", R"({".x":{"progid":"p"}})" + QByteArray(17 << 20, ' '), "");
        row("deep", R"({".x":)" + QByteArray(100000, '[') + QByteArray(100000, ']') + "}", "");
        row("other key", R"({".X":{"progid":"p"}})", "");
        row("other types", R"({".x":{"progid":["p"],"executable":"C:\\a.exe"}})", "");
        row("comment", R"({".x":{"progid":"/p -x","comment":" c\n","friendly_name":"n"}})", "/p -x|c");
        row("friendly name", R"({".x":{"progid":"p","comment":" ","friendly_name":" n "}})", "p|n");
        row("program", R"({".x":{"progid":"p","comment":1,"executable":"C:\\a b\\c.exe"}})", "p|c.exe");
    }
    void associations() {
        QFETCH(QByteArray, text);
        QVERIFY(!FileAssociation::find(m_home.path() + "/none", ".x"));
        const QString file = m_home.write("a/assosiate.json", text);
        const auto found = FileAssociation::find(m_home.path() + "/a", ".x");
        QTEST(found ? found->progId + "|" + found->displayName() : QString(), "expected");
        QVERIFY(QFile::remove(file) && QFile::link(m_home.write("b", text), file));
        QVERIFY(!FileAssociation::find(m_home.path() + "/a", ".x"));
        QFile::remove(file);
    }

    void documents() {
        QVERIFY(m_service.start());
        m_service.setBottle("b", {{"Path", m_bottle}});
        const QString at = m_bottle.mid(m_home.path().size() + 1);
        m_home.write(at + "/assosiate.json", "{\".x\":{\"progid\":\"p -x\\\"\",\"comment\":\"Name\"}}");
        m_home.write(at + "/launch.json",
                     "{\"version\":1,\"source\":{},\"wine\":\"" + m_bottle.toUtf8() + "/wine\"}");
        const QString wine = m_home.write(
            at + "/wine",
            "#!/bin/sh\ncd \"$WINEPREFIX\"; printf '%s\\n' \"$@\" \"$_CXB_WINE_PROGRAM_UUID\" >>calls\n"
            "trap 'echo ended >>calls; exit' TERM\ncase $4 in */slow) sleep 60 & wait ;; esac\n");
        QFile::setPermissions(wine, QFile::ReadOwner | QFile::ExeOwner);
        QCOMPARE(WineFileHandler("b", ".y", "/1.y").open(), -1);
        QVERIFY(shown().isEmpty() && calls().isEmpty());

        // The second document is opened while the first banner is shown, and is closed by the user.
        QElapsedTimer time;
        time.start();
        QTimer::singleShot(1000, this, [&] {
            QCOMPARE(shown(), QStringList{"Launching /1.x..."});
            QCOMPARE(WineFileHandler("b", ".x", "/1.x").open(), -1);
            QVERIFY(time.elapsed() < 2500);
            QTimer::singleShot(2500, this, [] {
                QCOMPARE(shown(), QStringList{"Launching /slow..."});
                confirmClose();
            });
            WineFileHandler("b", ".x", "/slow").open();
            QVERIFY(shown().isEmpty());
        });
        QCOMPARE(WineFileHandler("b", ".x", "/1.x").open(), -1);
        QVERIFY(time.elapsed() >= 3000);
        const QByteArray one = "start.exe\n/ProgIDOpen\np -x\"\n";
        QTRY_COMPARE(calls(), one + "/1.x\n\n" + one + "/slow\n\nended\n");
        QTimer::singleShot(500, qApp, &QCoreApplication::quit);
        time.restart();
        WineFileHandler("b", ".x", "/2.x").open();
        QVERIFY(shown().isEmpty() && time.elapsed() < 2500);
    }
};

QTEST_MAIN(WineFileHandlerTest)
#include "WineFileHandlerTest.moc"
