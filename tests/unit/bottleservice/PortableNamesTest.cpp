#include "bottleservice/portable/ArchiveNames.h"
#include "bottleservice/portable/PortableName.h"
#include "support/Table.h"

/// The names that a portable program brings along.
class PortableNamesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void copies_data() {
        const TestSupport::Table<QString, QString, QString> row("path", "folder", "bottle");
        row("plain", "/x/Harbour Office 2/", "Harbour Office 2", "portable-HarbourOffice2");
        row("archive", "/x/App-1.2.ZIP", "App-1.2", "portable-App-1.2");
        row("Chinese", "/x/游戏(绿色版)", "游戏(绿色版)", "portable-游戏绿色版");
        row("special", "/x/..a:b*\n\"c\"\\?.", "abc", "portable-abc");
        row("device", "/x/Con.tools", "Program Con.tools", "portable-ProgramCon.tools");
        row("nothing left", "/x/???", "Program", "portable-Program");
        row("turned around", QString::fromUtf8("/x/a\u202egnp.exe"), "agnp.exe", "portable-agnp.exe");
        row("long", "/x/" + QString(300, 'n'), QString(50, 'n'), "portable-" + QString(50, 'n'));
        row("shell", "/x/a`$(id)&;'b", "a`$(id)&;'b", "portable-aidb");
    }
    void copies() {
        QFETCH(QString, path);
        QTEST(PortableName::folder(path), "folder");
        QTEST(PortableName::bottle(path), "bottle");
    }

    void encodings_data() {
        const TestSupport::Table<QByteArray, QLocale::Language, QString> row("bytes", "language", "text");
        row("UTF-8", "程序\\a.exe", QLocale::English, "程序/a.exe");
        row("Chinese Windows", "\xb3\xcc\xd0\xf2.exe", QLocale::English, "程序.exe");
        row("Japanese Windows", "\x83\x51\x81\x5b\x83\x80.exe", QLocale::Japanese, "ゲーム.exe");
        row("DOS", "caf\x82.exe", QLocale::English, "café.exe");
    }
    void encodings() {
        QFETCH(QByteArray, bytes);
        QFETCH(QLocale::Language, language);
        QTEST(ArchiveNames::decoded({"plain", bytes}, language).value(1), "text");
    }
};

QTEST_GUILESS_MAIN(PortableNamesTest)
#include "PortableNamesTest.moc"
