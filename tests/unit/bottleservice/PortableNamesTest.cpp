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
        const TestSupport::Table<QByteArray, QString, QString> row("bytes", "locale", "text");
        row("UTF-8", "程序\\a.exe", "en_US", "程序/a.exe");
        row("Chinese Windows", "\x8c\x57\xb3\xcc.exe", "zh_CN", "學程.exe");
        row("Chinese elsewhere", "\xb3\xcc\xd0\xf2.exe", "en_US", "程序.exe");
        row("Taiwan", "\xb5\x7b\xa6\xa1.exe", "zh_TW", "程式.exe");
        row("Japan", "\x83\x51\x81\x5b\x83\x80.exe", "ja_JP", "ゲーム.exe");
        row("Korea", "\xb0\xd4\xc0\xd3.exe", "ko_KR", "게임.exe");
        row("Germany",
            "M\x81nchen Gr\x94\xe1"
            "e.exe",
            "de_DE", "München Größe.exe");
        row("France", "caf\x82.exe", "fr_FR", "café.exe");
        row("Portugal", "\x80\xc7O \x87\xc6o.exe", "pt_PT", "ÇÃO ção.exe");
        row("English", "caf\x82.exe", "en_US", "café.exe");
        row("Poland", "\xbe\xa2\x88w.exe", "pl_PL", "żółw.exe");
        row("Czechia", "men\xe7\xa1.exe", "cs_CZ", "menší.exe");
        row("Russia", "\x8f\xe0\xe0.exe", "ru_RU", "Прр.exe");
    }
    void encodings() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, locale);
        QTEST(ArchiveNames::decoded({"plain", bytes}, QLocale(locale)).value(1), "text");
    }
};

QTEST_GUILESS_MAIN(PortableNamesTest)
#include "PortableNamesTest.moc"
