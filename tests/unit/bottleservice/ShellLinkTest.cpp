#include <QtEndian>

#include "bottleservice/bottles/ExecutableRules.h"
#include "fenk/system/ShellLink.h"
#include "support/Table.h"

namespace {

QByteArray word(quint16 value) {
    value = qToLittleEndian(value);
    return QByteArray(reinterpret_cast<const char*>(&value), 2);
}
QByteArray dword(quint32 value) {
    return word(quint16(value)) + word(quint16(value >> 16));
}
QByteArray wide(const QString& text) {
    return QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
}
QByteArray header(quint32 flags) {
    return dword(0x4c) + QByteArray::fromHex("0114020000000000c000000000000046") + dword(flags) +
           QByteArray(52, 0);
}
QByteArray item(const QByteArray& body) {
    return word(quint16(body.size() + 2)) + body;
}
/// A directory or file with a short name and a long one.
QByteArray entry(char type, const QByteArray& shortName, const QString& longName) {
    QByteArray body = QByteArray(1, type) + QByteArray(11, 0) + shortName + QByteArray(1, 0);
    if (body.size() % 2)
        body += '\0';
    const int offset = body.size() + 2;
    const QByteArray extension = word(3) + dword(0xbeef0004) + QByteArray(12, 0) + wide(longName) + word(0);
    return item(body + word(quint16(extension.size() + 4)) + extension + word(quint16(offset)));
}
QByteArray items(const QByteArray& list) {
    return word(quint16(list.size() + 2)) + list + word(0);
}
QByteArray drive() {
    return item("/C:\\" + QByteArray(19, 0));
}
QByteArray text(const QString& string) {
    return word(quint16(string.size())) + wide(string);
}
QByteArray info(const QByteArray& path) {
    const QByteArray body = dword(28) + dword(1) + dword(0) + dword(28) + dword(0) +
                            dword(28 + quint32(path.size())) + path + QByteArray(2, 0);
    return dword(quint32(body.size() + 4)) + body;
}

const QByteArray Unicode =
    header(0x1 | 0x2 | 0x4 | 0x10 | 0x20 | 0x40 | 0x80) +
    items(drive() + entry(0x31, "PROGRA~1", "程序 目录") + entry(0x32, "A~1.EXE", "应用.exe")) +
    info("C:\\??\\??.exe") + text("about") + text("C:\\程序 目录") + text("-x \"a b\"") + text("C:\\i.ico") +
    dword(0);

}  // namespace

/// The reader of Windows shortcuts, and what of them is worth an entry.
class ShellLinkTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void targets_data() {
        const TestSupport::Table<QByteArray, QString> row("file", "target");  // empty: no shortcut to a file
        row("items in unicode", Unicode, "C:\\程序 目录\\应用.exe");
        row("narrow path", header(0x2) + info("C:\\a\\b.exe"), "C:\\a\\b.exe");
        row("environment",
            header(0) + dword(788) + dword(0xa0000001) + QByteArray(260, 0) + wide("D:\\x.exe") +
                QByteArray(520 - 18, 0) + dword(0),
            "D:\\x.exe");
        row("installer", header(0x2) + info("C:\\a.exe") + dword(8) + dword(0xa0000006), "");
        row("no drive", header(0x2) + info("\\\\server\\a.exe"), "");
        row("control character", header(0x2) + info("C:\\a\nb.exe"), "");
        row("other class", Unicode.left(8) + "x" + Unicode.mid(9), "");
        row("empty", "", "");
    }
    void targets() {
        QFETCH(QByteArray, file);
        const auto link = Fenk::ShellLink::parse(file);
        QTEST(link ? link->target : QString(), "target");
    }

    void strings() {
        const auto link = Fenk::ShellLink::parse(Unicode);
        QVERIFY(link);
        QCOMPARE(link->arguments, QString("-x \"a b\""));
        QCOMPARE(link->workingDirectory, QString("C:\\程序 目录"));
        QCOMPARE(link->iconPath, QString("C:\\i.ico"));
        QCOMPARE(link->description, QString("about"));
    }

    void rules() {
        QVERIFY(ExecutableRules::isProgramShortcut("微信", "C:\\W\\a.EXE"));
        QVERIFY(!ExecutableRules::isProgramShortcut("卸载微信", "C:\\W\\a.exe"));
        QVERIFY(!ExecutableRules::isProgramShortcut("App", "C:\\W\\unins000.exe"));
        QVERIFY(!ExecutableRules::isProgramShortcut("Manual", "C:\\W\\manual.pdf"));
    }
};

QTEST_GUILESS_MAIN(ShellLinkTest)
#include "ShellLinkTest.moc"
