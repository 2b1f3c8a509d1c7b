#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

#include "bottleservice/bottles/Associations.h"
#include "bottleservice/desktop/DesktopEntry.h"
#include "bottleservice/desktop/MadeFiles.h"
#include "support/TestHome.h"

using TestSupport::readFile;

/// What the service tells the desktop, and what it takes back.
class ServiceDesktopTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void entry() {
        DesktopEntry entry;
        entry.name = "a\\b\nExec=sh";
        entry.icon = "/x/y.png";
        entry.command = QStringList{"/opt/a b", "lumorawine://公 \"$(x)`%f\\/1"};
        entry.wmClass = "p.exe";
        const QByteArray text = entry.toText();
        QVERIFY2(text.contains("\nName=a\\\\b Exec=sh\n"), text.constData());
        // What a reader of the file sees once it has undone the escapes of values.
        QVERIFY2(text.contains("\nExec=\"/opt/a b\" \"lumorawine://公 \\\\\"\\\\$(x)\\\\`%%f\\\\\\\\/1\"\n"),
                 text.constData());
    }

    void associations() {
        const auto classes = RegistryFile::parse(
            "WINE REGISTRY Version 2\n\n[Software\\\\Classes\\\\.CXT] 1\n#time=1\n@=\"Cx.Doc\"\n"
            "\"Content Type\"=\"Application/X-Cxt\"\n\n[Software\\\\Classes\\\\Cx.Doc] 1\n"
            "@=\"\\x6587\\x4ef6 \\\"a\\\"\"\n[Software\\\\Classes\\\\Cx.Doc\\\\shell\\\\open\\\\command]\n"
            "@=\"C:\\\\P F\\\\cx.exe \\\"%1\\\"\"\n[Software\\\\Classes\\\\.txt]\n@=\"Cx.Doc\"\n"
            "[Software\\\\Classes\\\\.bad/..]\n@=\"Cx.Doc\"\n[Software\\\\Classes\\\\.none]\n@=\"\"\n"
            "[Software\\\\Classes\\\\.own]\n@=\"own\"\n"
            "[Software\\\\Classes\\\\own\\\\shell\\\\open\\\\command]\n"
            "@=str(2):\"C:\\\\windows\\\\notepad.exe %1\"\n[Software\\\\Classes\\\\cx-link]\n"
            "\"URL Protocol\"=\"\"\n\"broken\n\"n\"=dword:1\n"
            "[Software\\\\Classes\\\\cx-link\\\\shell\\\\open\\\\command]\n"
            "@=\"\\\"C:\\\\cx.exe\\\" "
            "\\\"%1\\\"\"\n[Software\\\\Other\\\\.x]\n@=\"Cx.Doc\"\n[Software\\\\Classes\\\\",
            "Software\\Classes\\");
        const QJsonObject found = Associations::collect(classes);
        QCOMPARE(found.keys(), QStringList({".cxt", ".txt", "cx-link"}));
        const auto mime = [&found](const char* key) { return found[key].toObject()["mime"].toString(); };
        QCOMPARE(mime(".cxt"), QString("application/x-cxt"));
        QCOMPARE(mime(".txt"), QString("text/plain"));
        QCOMPARE(mime("cx-link"), QString("x-scheme-handler/cx-link"));
        QCOMPARE(found[".cxt"].toObject()["executable"].toString(), QString("C:\\P F\\cx.exe"));
        QCOMPARE(found[".cxt"].toObject()["comment"].toString(), QString("文件 \"a\""));
    }

    void onlyOwnFilesAreTakenBack() {
        const TestSupport::TestHome home;
        const QString other = home.write("letter", "x");
        QString error;
        MadeFiles made(home.path());
        const QString prefix = MadeFiles::prefixOf("b");
        const QString first = home.path() + "/apps/" + prefix + "1.desktop";
        const QString link = home.path() + '/' + prefix + "2.desktop";
        QVERIFY(made.make("b", "1", {{first, "a"}}, true, &error));
        QVERIFY(made.make("b", "2", {{link, "a"}}, false, &error));
        QVERIFY(QFile::remove(link) && QFile::link(other, link));
        QVERIFY(!made.make("b", "2", {{link, "a"}}, false, &error));
        QCOMPARE(made.bottles(), QStringList("b"));

        // Somebody writes foreign paths into the record.
        QJsonObject record = QJsonDocument::fromJson(readFile(home.path() + "/made-files.json")).object();
        record["b"] = QJsonObject{{"1", QJsonArray{first, other, home.path(), 5}}, {"2", QJsonArray{link}}};
        home.write("made-files.json", QJsonDocument(record).toJson());
        made.undo("b");
        QVERIFY(!QFile::exists(first) && QFile::exists(other) && QFileInfo(link).isSymLink());
        QVERIFY(made.bottles().isEmpty());
        QVERIFY(!made.make("b", "/../1", {{home.path() + "/x/../" + prefix, "a"}}, false, &error));
        const QString torn = home.write("made-files.json", "torn");
        QVERIFY(made.make("b", "1", {{first, "a"}}, true, &error));
        QCOMPARE(readFile(torn + ".unreadable"), QByteArray("torn"));
    }
};

QTEST_GUILESS_MAIN(ServiceDesktopTest)
#include "ServiceDesktopTest.moc"
