#include "launch/FileAssociation.h"

#include <QTemporaryDir>
#include <QtTest>

class FileAssociationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void find_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("expected");  // ProgID and name; empty when nothing is found
        const auto row = [](const char* name, const QByteArray& text, const char* expected) {
            QTest::newRow(name) << text << expected;
        };
        row("no file", "", "");
        row("broken", R"({".x":{"progid":"p"})", "");
        row("array", R"([{".x":{"progid":"p"}}])", "");
        row("too large", R"({".x":{"progid":"p"}})" + QByteArray(17 << 20, ' '), "");
        row("deep", R"({".x":)" + QByteArray(100000, '[') + QByteArray(100000, ']') + "}", "");
        row("other key", R"({".X":{"progid":"p"}})", "");
        row("other type", R"({".x":"p"})", "");
        row("ProgID of another type", R"({".x":{"progid":["p"],"executable":"C:\\a.exe"}})", "");
        row("comment", R"({".x":{"progid":"/p -x","comment":" c\n","friendly_name":"n"}})", "/p -x|c");
        row("friendly name", R"({".x":{"progid":"p","comment":" ","friendly_name":" n "}})", "p|n");
        row("program", R"({".x":{"progid":"p","comment":1,"executable":"C:\\a b\\c.exe"}})", "p|c.exe");
    }
    void find() {
        QFETCH(QByteArray, text);
        QTemporaryDir bottle;
        QFile file(bottle.path() + "/assosiate.json");
        QVERIFY(text.isEmpty() || (file.open(QIODevice::WriteOnly) && file.write(text) == text.size()));
        file.close();
        const auto found = FileAssociation::find(bottle.path(), ".x");
        QTEST(found ? found->progId + "|" + found->displayName() : QString(), "expected");
        QVERIFY(file.rename(bottle.path() + "/other") == !text.isEmpty());
        QVERIFY(QFile::link(bottle.path() + "/other", bottle.path() + "/assosiate.json"));
        QVERIFY(!FileAssociation::find(bottle.path(), ".x"));
    }
};

QTEST_GUILESS_MAIN(FileAssociationTest)
#include "FileAssociationTest.moc"
