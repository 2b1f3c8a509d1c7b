#include "RandomManifest.h"
#include "manifest/ManifestPath.h"
#include "manifest/ManifestReader.h"
#include "manifest/ManifestValues.h"
#include "manifest/ManifestWriter.h"
#include "manifest/RegistryRules.h"
#include "support/Table.h"

using TestSupport::Table;
using Type = Manifest::RegistryValue::Type;

namespace {

/// With what the reader requires, so that a row has only its own point.
QByteArray withRequired(const QByteArray& more) {
    return "Name: n\nDebInfo: {}\n" + more;
}

QByteArray exampleOfDocumentation() {
    QFile file(TEST_SOURCE_DIR "/docs/MANIFEST.md");
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray text = file.readAll();
    const int begin = text.indexOf("```yaml\n") + 8;
    return text.mid(begin, text.indexOf("```", begin) - begin);
}

}  // namespace

class ManifestTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void documentedExample() {
        const auto [manifest, error] = ManifestReader::read(exampleOfDocumentation());
        QCOMPARE(error, QString());
        QCOMPARE(manifest.setup.size, qint64(89128960));
        QCOMPARE(manifest.wineCommand, QString("lumora-wine10-stable"));
        const Manifest::Bottle& bottle = manifest.bottle;
        QCOMPARE(*bottle.parameters.dpi, 120);
        QCOMPARE(bottle.parameters.switches, (QMap<QString, bool>{{"mem_optimized", true}}));
        QCOMPARE(bottle.dllOverrides, (QMap<QString, QString>{{"crashreport.exe", ""}, {"msvcp140", "n,b"}}));
        QCOMPARE(bottle.registry.size(), 4);
        QCOMPARE(bottle.registry[0].key, QString("HKEY_CURRENT_USER\\Software\\Studio"));
        QCOMPARE(bottle.registry[1].number, quint64(4));
        QCOMPARE(bottle.registry[2].texts, QStringList({"one", "two"}));
        QVERIFY(bottle.registry[3].type == Type::Deleted);
        QCOMPARE(bottle.files[0].content, QByteArray("[view]\nzoom=2\n"));
        QCOMPARE(bottle.files[1].content, QByteArray("\0\1\2", 3));
        QCOMPARE(bottle.commands[0].arguments, QStringList({"/s", "quartz.dll"}));
        QCOMPARE(manifest.programs[0].envs.value("STUDIO_MODE"), QString("safe"));
    }

    /// What earlier versions have written.
    void earlierForm() {
        const auto [manifest, error] = ManifestReader::read(
            "Name: \"N: #\"\nIntroduction: \"\"\nCategory: t\ndownloadUrl: "
            "\"http://x.example\"\npackageSize: \"3\"\n"
            "Contributor:\n  Name: t\n  Email: t\nDebInfo:\n  wine_cmd: \"r\"\n  wine_deps: \"\"\n"
            "Bottle:\n  Windows: \"win10\"\n  DXVK: \"\"\n  VKD3D: \"\"\n  Parameters:\n    cpu_rendering: "
            "false\n"
            "    custom_dpi: 96\n    renderer: \"gl\"\n  DLL_Overrides: {}\n  Font_Replacements: {}\n  "
            "Dependencies: []\n"
            "Program:\n  name: \"a\"\n  path: \"a.exe\"\n  arguments: \"\"\n  envs: {}\n");
        QCOMPARE(error, QString());
        QCOMPARE(manifest.programs.size(), 1);
        QCOMPARE(manifest.programs[0].path, QString("a.exe"));
        QCOMPARE(*manifest.bottle.parameters.dpi, 96);
    }

    void wineCommand_data() {
        const Table<QByteArray, QString> row("debInfo", "expected");
        row("text", "{wine_cmd: w}", "w");
        row("number", "{wine_cmd: 8}", "8");
        row("null", "{wine_cmd: }", "lumora-wine8-stable");
        row("list", "{wine_cmd: [w]}", "lumora-wine8-stable");
        row("map", "{wine_cmd: {a: b}}", "lumora-wine8-stable");
        row("missing", "{}", "lumora-wine8-stable");
        row("null map", "", "lumora-wine8-stable");
    }
    void wineCommand() {
        QFETCH(QByteArray, debInfo);
        const auto [manifest, error] = ManifestReader::read("Name: n\nDebInfo: " + debInfo + "\n");
        QCOMPARE(error, QString());
        QTEST(manifest.wineCommand, "expected");
    }

    void refusals_data() {
        const Table<QByteArray, QString> row("text", "error");
        const auto more = [&row](const char* tag, const QByteArray& text, const QString& error) {
            row(tag, withRequired(text), error);
        };
        const auto bottle = [&](const char* tag, const QByteArray& text, const QString& error) {
            more(tag, "Bottle: {" + text + "}", "Line 3, column " + error);
        };
        row("empty", "", "The text is empty.");
        row("no map", "- a", "Line 1, column 1: The manifest must be a map of keys and values.");
        row("no name", "DebInfo: {}", "Line 1, column 1: \"Name\" of the manifest is missing.");
        row("blank name", "Name: ' '\nDebInfo: {}",
            "Line 1, column 7: \"Name\" of the manifest must not be empty.");
        row("no DebInfo", "Name: n", "Line 1, column 1: \"DebInfo\" of the manifest is missing.");
        row("not UTF-8", "Name: \xff", "The text is not UTF-8.");
        row("null byte", QByteArray("Name: \0", 7), "The text contains a null character.");
        row("two documents", "Name: n\n---\nName: m", "The text must be one YAML document, not several.");
        row("broken", "Name: n\n  bad: x", "Line 2, column 6: illegal map value.");
        row("deep", "Name: " + QByteArray(17, '[') + QByteArray(17, ']'),
            "Line 1, column 22: The text is nested too deeply.");
        row("wide", "Name: [" + QByteArray("a,").repeated(20001) + "]",
            "Line 1, column 40002: The text has too many entries.");
        row("brackets", QByteArray(200000, '['),
            "More than 100000 brackets, commas and colons stand in one value; a file with so many must be "
            "Base64.");
        row("large", QByteArray(2 * 1024 * 1024 + 1, ' '), "The manifest is larger than 2097152 bytes.");
        row("twice", "Name: n\nName: m", "Line 2, column 1: \"Name\" is given twice.");
        row("key of a map", "? {a: b}\n: c", "Line 1, column 3: A key must be text.");
        more("anchor", "Category: &a x", "Line 3, column 11: Anchors (&name) are not allowed.");
        more("alias", "Category: *a", "Line 3, column 11: the referenced anchor is not defined.");
        more("tag", "Category: !!str x", "Line 3, column 11: Tags (!name) are not allowed.");
        more("unknown key", "Foo: 1", "Line 3, column 1: \"Foo\" is not a key of the manifest.");
        more("hostile key", "\"a\\nb\\u202e\": 1",
             "Line 3, column 1: \"a?b?\" is not a key of the manifest.");
        bottle("unknown key of Bottle", "Foo: 1", "10: \"Foo\" is not a key of Bottle.");
        more("text wanted", "Category: [a]", "Line 3, column 11: \"Category\" of the manifest must be text.");
        more("address", "downloadUrl: ftp://x.example",
             "Line 3, column 14: \"downloadUrl\" of the manifest must be an address that begins with http:// "
             "or "
             "https://.");
        more("sum", "Setup: {SHA256: abc}",
             "Line 3, column 17: \"SHA256\" of Setup must be 64 hexadecimal digits.");
        more("size", "Setup: {Size: \"1\"}",
             "Line 3, column 15: \"Size\" of Setup must be a whole number from 0 to 1099511627776.");
        bottle("Windows", "Windows: win12", "19: \"Windows\" of Bottle is no Windows version such as win10.");
        bottle("component", "DXVK: ../x", "16: \"DXVK\" of Bottle is no name of a component.");
        bottle("dependency", "Dependencies: [a/b]",
               "24: \"Dependencies\" of Bottle has an entry that is no name of a component.");
        bottle("dpi", "Parameters: {custom_dpi: 95}",
               "35: \"custom_dpi\" of Parameters must be a whole number from 96 to 480.");
        bottle("switch", "Parameters: {ntsync: yes}", "31: \"ntsync\" of Parameters must be true or false.");
        bottle("override", "DLL_Overrides: {\"a;b\": n}",
               "26: \"DLL_Overrides\" of Bottle must have names of DLLs, each with n, b, \"n,b\", \"b,n\" or "
               "\"\".");
        bottle("hive", "Registry: [{Key: HKCR\\x}]",
               "27: \"Key\" of an entry of Registry must be a key below HKCU or HKLM.");
        bottle(
            "large number", "Registry: [{Key: HKCU\\x, Type: REG_DWORD, Data: 0x100000000}]",
            "58: \"Data\" of an entry of Registry must be a number that fits the type, decimal or with 0x.");
        bottle("path", "Files: [{Path: 'c:\\..\\x', Text: a}]",
               "25: \"Path\" of an entry of Files must have no empty part, no \".\" and no \"..\".");
        bottle("same path", "Files: [{Path: c:/A, Text: a}, {Path: 'C:\\a', Text: b}]",
               "48: \"Path\" of an entry of Files is given twice.");
        bottle("no content", "Files: [{Path: c:/a}]",
               "25: \"Path\" of an entry of Files must have either Text or Base64 beside it.");
        bottle("Base64", "Files: [{Path: c:/a, Base64: AAE}]",
               "39: \"Base64\" of an entry of Files is not Base64.");
        bottle("large files", "Files: [{Path: c:/a, Text: " + QByteArray(1024 * 1024 + 1, 'x') + "}]",
               "25: \"Path\" of an entry of Files makes all Files together larger than 1048576 bytes.");
        bottle("command", "Commands: [{Program: /bin/sh}]",
               "31: \"Program\" of an entry of Commands must lie on drive C:, such as "
               "\"c:\\folder\\file.ini\", or be "
               "the plain name of a program that comes with Wine.");
        const QString noArgument =
            "51: \"Arguments\" of an entry of Commands must not name drive Z:, a path of Unix, \"/unix\" or "
            "\"\\\\?\\\".";
        for (const char* argument : {"/c start /u^nix x", "copy z:\\x c:", "\\\\?\\unix\\bin", "/B /bin/sh"})
            bottle(argument, "Commands: [{Program: cmd.exe, Arguments: ['" + QByteArray(argument) + "']}]",
                   noArgument);
        bottle("start.exe", "Commands: [{Program: Start}]",
               "31: \"Program\" of an entry of Commands must not be start.exe, which also starts programs "
               "outside of Wine.");
        bottle("non-character", "Files: [{Path: c:/a, Text: \"\\uFDD0\"}]",
               "37: \"Text\" of an entry of Files has a character that is not allowed there.");
        more("both forms", "Program: {path: a}\nPrograms: [{path: a}]",
             "Line 3, column 10: \"Program\" of the manifest must not stand beside Programs.");
        for (const char* name :
             {"LD_PRELOAD", "VK_ADD_DRIVER_FILES", "__EGL_VENDOR_LIBRARY_DIRS", "GBM_BACKENDS_PATH",
              "OPENSSL_CONF", "SPA_PLUGIN_DIR", "SDL_DYNAMIC_API", "https_proxy"})
            more(name, "Programs: [{path: a, envs: {" + QByteArray(name) + ": x}}]",
                 "Line 3, column 29: \"envs\" of an entry of Programs must have names of variables that may "
                 "be shared, each with a text.");
    }
    void refusals() {
        QFETCH(QByteArray, text);
        QTEST(ManifestReader::read(text).error, "error");
    }

    void registryRules_data() {
        const Table<QString, QString, bool> row("key", "name", "mayBeSet");
        row("software", "HKEY_CURRENT_USER\\Software\\Studio", "Run", true);
        row("start", "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce", "a", false);
        row("32 bits", "HKEY_CURRENT_USER\\SOFTWARE\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\Run",
            "a", false);
        row("beside", "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\App Paths", "a",
            true);
        row("service", "HKEY_LOCAL_MACHINE\\System\\ControlSet001\\Services\\x", "ImagePath", false);
        row("autorun", "HKEY_CURRENT_USER\\Software\\Microsoft\\Command Processor", "AutoRun", false);
        row("not autorun", "HKEY_CURRENT_USER\\Software\\Microsoft\\Command Processor", "Color", true);
        row("browser", "HKEY_CURRENT_USER\\Software\\Wine\\WineBrowser", "Browsers", false);
        row("variable", "HKEY_CURRENT_USER\\Environment", "STUDIO", true);
        row("loader", "HKEY_CURRENT_USER\\environment", "LD_AUDIT", false);
        row("machine's variable",
            "HKEY_LOCAL_MACHINE\\System\\CurrentControlSet\\Control\\Session Manager\\Environment",
            "VK_ADD_X", false);
    }
    void registryRules() {
        QFETCH(QString, key);
        QFETCH(QString, name);
        QTEST(RegistryRules::fault(key, name).isEmpty(), "mayBeSet");
        // What only takes away starts nothing.
        const QByteArray entry = "Bottle: {Registry: [{Type: delete, Key: '" + key.toUtf8() + "'}]}";
        QCOMPARE(ManifestReader::read(withRequired(entry)).error, QString());
    }

    void paths_data() {
        const Table<QString, bool, bool> row("path", "mayBeWritten", "mayBeRun");
        row("plain", "c:\\a\\b.ini", true, true);
        row("slashes", "C:/a b/ü.ini", true, true);
        row("Windows", "c:\\Windows\\x", false, true);
        row("like Windows", "c:\\windows2\\x", true, true);
        row("other drive", "d:\\a", false, false);
        row("relative", "a\\b", false, false);
        row("of the drive's folder", "c:a", false, false);
        row("of another machine", "\\\\host\\c$\\a", false, false);
        row("Unix", "/etc/passwd", false, false);
        row("climbs", "c:\\a\\..\\b", false, false);
        row("empty part", "c:\\a\\\\b", false, false);
        row("drive", "c:\\", false, false);
        row("stream", "c:\\a:b", false, false);
        row("pattern", "c:\\a*", false, false);
        row("device", "c:\\a\\NUL", false, false);
        row("device with extension", "c:\\com1.txt", false, false);
        row("device with other digit", QString("c:\\LPT\u00b2"), false, false);
        row("no device", "c:\\console", true, true);
        row("dot at the end", "c:\\windows.\\x", false, false);
        row("blank at the end", "c:\\windows \\x", false, false);
        row("line", "c:\\a\nb", false, false);
        row("long", "c:\\" + QString(238, 'a'), false, false);
    }
    void paths() {
        QFETCH(QString, path);
        QTEST(ManifestPath::check(path, ManifestPath::Use::Write).isEmpty(), "mayBeWritten");
        QTEST(ManifestPath::check(path, ManifestPath::Use::Run).isEmpty(), "mayBeRun");
    }

    /// What the parser would refuse as text.
    void largeFiles() {
        Manifest manifest;
        manifest.name = "n";
        manifest.bottle.files = {{"c:/table.csv", QByteArray("1,").repeated(150000)},
                                 {"c:/text", QByteArray("x\n").repeated(300000)},
                                 {"c:/never", QString::fromUcs4(U"\U0001fffe \ufdef").toUtf8()}};
        const auto [again, error] = ManifestReader::read(ManifestWriter::write(manifest));
        QCOMPARE(error, QString());
        QVERIFY(again == manifest);
    }

    void writtenIsReadAgain() {
        const quint32 seed = 20240611;
        qInfo() << "seed" << seed;
        QRandomGenerator random(seed);
        for (int round = 0; round < 300; ++round) {
            const Manifest manifest = randomManifest(&random);
            const QByteArray text = ManifestWriter::write(manifest);
            const auto [again, error] = ManifestReader::read(text);
            QVERIFY2(error.isEmpty() && again == manifest, (error.toUtf8() + '\n' + text).constData());
        }
    }
};

QTEST_GUILESS_MAIN(ManifestTest)
#include "ManifestTest.moc"
