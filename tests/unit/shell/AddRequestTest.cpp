#include <QDir>
#include <QSemaphore>
#include <QSysInfo>

#include "backend/OwnThread.h"
#include "shell/portable/ProgramLikelihood.h"
#include "shell/requests/AddInputs.h"
#include "shell/requests/AddRequest.h"
#include "support/SmallProgram.h"
#include "support/Table.h"
#include "support/TestHome.h"

namespace {

/// A shortcut to a Windows path, with the relative path that Windows adds.
QByteArray shortcut(const QByteArray& target, const QByteArray& relative = {}) {
    const auto number = [](int value, int bytes) {
        return QByteArray(reinterpret_cast<const char*>(&value), bytes);
    };
    const QByteArray info = number(28, 4) + number(1, 4) + number(0, 4) + number(28, 4) + number(0, 4) +
                            number(28 + target.size(), 4) + target + QByteArray(2, 0);
    return number(0x4c, 4) + QByteArray::fromHex("0114020000000000c000000000000046") +
           number(relative.isEmpty() ? 2 : 10, 4) + QByteArray(52, 0) + number(info.size() + 4, 4) + info +
           (relative.isEmpty() ? QByteArray() : number(relative.size(), 2) + relative);
}

}  // namespace

Q_DECLARE_METATYPE(ProgramFacts)

/// The rules of what is added: what an input is, what several mean together, which program is the likely one.
class AddRequestTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;

private Q_SLOTS:
    void inputs_data() {
        const TestSupport::Table<QString, QStringList> row("text", "inputs");
        const QString home = QDir::homePath();
        row("address", " https://example.com/a%20b.exe\n", {"https://example.com/a%20b.exe"});
        row("files", "copy\nfile:///a/b%20c.exe\r\nfile:///a/d.zip", {"/a/b c.exe", "/a/d.zip"});
        row("paths", "'/a/b c.exe'\n~/d", {"/a/b c.exe", home + "/d"});
        row("other host", "file://server/a.exe", {});
        row("other scheme", "ftp://example.com/a.exe", {});
        row("odd", "https://example.com/a {1}|b%.exe", {"https://example.com/a%20%7B1%7D%7Cb%25.exe"});
        row("own host", "file://" + QSysInfo::machineHostName() + "/a/b", {"/a/b"});
        row("script", "javascript:alert(1)", {});
        row("keyword", "office", {});
        row("sentence", "https://example.com is nice", {});
        row("mixed", "/a/b.exe\nhello", {});
    }
    void inputs() {
        QFETCH(QString, text);
        QTEST(AddInputs::ofText(text), "inputs");
    }

    void urls() {
        QCOMPARE(AddInputs::ofUrls({QUrl("file:///a/b/"), QUrl("smb://nas/x"), QUrl("file://localhost/c")}),
                 QStringList({"/a/b", "smb://nas/x", "/c"}));
    }

    void requests_data() {
        using Kind = AddRequest::Kind;
        // The last item's path, or a part of the sentence.
        const TestSupport::Table<QStringList, int, QString> row("files", "kind", "result");
        row("program", {"a/Setup.EXE"}, int(Kind::Open), "a/Setup.EXE");
        row("batch", {"a/run.bat"}, int(Kind::Open), "a/run.bat");
        row("manifest", {"a/x.yml"}, int(Kind::Manifest), "a/x.yml");
        row("folder", {"a"}, int(Kind::Portable), "a");
        row("no zip", {"a/x.ZIP"}, int(Kind::Refused), "It is damaged");
        row("text", {"a/notes.txt"}, int(Kind::Refused), "It is not a Windows program.");
        row("missing", {"a/gone.exe"}, int(Kind::Refused), "There is no such file.");
        row("program and an archive", {"a/Setup.EXE", "a/x.ZIP"}, int(Kind::Refused), "one at a time");
        row("program and its files", {"a/notes.txt", "a/Setup.EXE"}, int(Kind::Open), "a/Setup.EXE");
        row("program and a file elsewhere", {"notes.txt", "a/Setup.EXE"}, int(Kind::Refused), "notes.txt");
        row("two programs", {"a/Setup.EXE", "a/run.bat"}, int(Kind::Several), "a/run.bat");
        row("two folders", {"a", "w"}, int(Kind::Refused), "one at a time");
        row("too many", QString("a/run.bat ").repeated(9).split(' ', Qt::SkipEmptyParts), int(Kind::Refused),
            "8 is the most");
        row("link beside", {"w/rel.lnk"}, int(Kind::Open), "w/Program Files/App/App.exe");
        row("link of a mounted Windows", {"w/Users/me/Desktop/app.lnk"}, int(Kind::Open),
            "w/Program Files/App/App.exe");
        row("link to a folder", {"w/folder.lnk"}, int(Kind::Portable), "w/Program Files/App");
        row("link to a folder above", {"w/above.lnk"}, int(Kind::Refused), "is not on this computer");
        row("dead link", {"w/dead.lnk"}, int(Kind::Refused), "It is a shortcut to C:\\Gone\\a.exe");
        row("no link", {"w/no.lnk"}, int(Kind::Refused), "does not lead to a program");
        row("link in a bottle", {".local/share/lumora-wine-bottles/bottles/b/drive_c/x.lnk"}, int(Kind::Open),
            ".local/share/lumora-wine-bottles/bottles/b/dosdevices/c:/App/a.exe");
    }
    void requests() {
        QFETCH(QStringList, files);
        QFETCH(int, kind);
        QFETCH(QString, result);
        for (const char* name : {"a/Setup.EXE", "a/run.bat", "a/x.yml", "a/x.ZIP", "a/notes.txt", "notes.txt",
                                 "w/Program Files/App/App.exe"})
            m_home.write(name, QString(name).endsWith("exe", Qt::CaseInsensitive)
                                   ? TestSupport::smallProgram()
                               : QString(name).endsWith(".yml") ? "Name: a\nDebInfo: {}\n"
                                                                : "x");
        m_home.write("w/rel.lnk", shortcut("D:\\x.exe", ".\\program files\\App\\app.EXE"));
        m_home.write("w/Users/me/Desktop/app.lnk", shortcut("C:\\PROGRAM FILES\\App\\App.exe"));
        m_home.write("w/folder.lnk", shortcut("C:\\Program Files\\App"));
        m_home.write("w/above.lnk", shortcut("C:\\..", ".."));
        m_home.write("w/dead.lnk", shortcut("C:\\Gone\\a.exe"));
        m_home.write("w/no.lnk", "x");
        const QString bottle = ".local/share/lumora-wine-bottles/bottles/b/";
        m_home.write(bottle + "drive_c/App/a.exe", TestSupport::smallProgram());
        m_home.write(bottle + "drive_c/x.lnk", shortcut("C:\\app\\A.exe"));
        QDir(m_home.path()).mkpath(bottle + "dosdevices");
        QFile::link("../drive_c", m_home.path() + '/' + bottle + "dosdevices/c:");
        QVector<AddItem> items;
        for (const QString& file : files)
            items += AddItem::read(m_home.path() + '/' + file, false);
        const AddRequest request = AddRequest::of(items);
        QCOMPARE(int(request.kind), kind);
        if (request.kind == AddRequest::Kind::Refused)
            QVERIFY2(request.errorText.contains(result), qPrintable(request.errorText));
        else
            QCOMPARE(request.items.last().path, m_home.path() + '/' + result);
    }

    /// Files on servers that do not answer hold up nothing else, also when nobody waits for them any more.
    void stuckReading() {
        constexpr int Count = 8;
        const auto begun = std::make_shared<QSemaphore>(), answer = std::make_shared<QSemaphore>();
        for (int i = 0; i < Count; ++i) {
            const OwnThread thread;
            QtConcurrent::run(thread.pool(), [begun, answer] {
                begun->release();
                answer->acquire();
            });
            begun->acquire();
        }
        const QFuture<void> other = QtConcurrent::run([] {});
        QTRY_VERIFY(other.isFinished());
        answer->release(Count);
    }

    void likelihood_data() {
        const TestSupport::Table<ProgramFacts, ProgramFacts> row("likely", "other");
        const auto facts = [](const char* file, const QStringList& names = {}, int depth = 0,
                              qint64 bytes = 1 << 20, bool hasIcon = true) {
            return ProgramFacts{file, "Ledger 2.1 Portable", names, depth, bytes, true, hasIcon, true, false};
        };
        ProgramFacts console = facts("ledger.exe");
        console.isGraphical = false;
        ProgramFacts arm = facts("Ledger.exe");
        arm.runsHere = false;
        row("name", facts("ledger.exe"), facts("viewer.exe"));
        row("name with extras", facts("Ledger-x64.exe"), facts("viewer.exe", {"Viewer"}));
        row("product", facts("main.exe", {"Ledger"}), facts("tool.exe", {"Tool"}));
        row("uninstaller", facts("main.exe"), facts("unins000.exe", {"Ledger"}));
        row("updater", facts("main.exe"), facts("LedgerUpdate.exe", {"Ledger"}));
        row("updater by description", facts("main.exe"), facts("ledger2.exe", {"Ledger Updater"}));
        row("crash reporter", facts("main.exe"), facts("crashpad_handler.exe"));
        row("Chinese uninstaller", facts("main.exe"), facts("卸载 Ledger.exe"));
        row("helper's word in the name", {"Clip Service.exe", "Clip Service 2.0", {}},
            {"viewer.exe", "Clip Service 2.0", {}});
        row("settings", facts("main.exe"), facts("config.exe"));
        row("window", facts("ledger.exe"), console);
        row("icon", facts("a.exe"), facts("b.exe", {}, 0, 1 << 20, false));
        row("on top", facts("a.exe"), facts("a.exe", {}, 3));
        row("size", facts("a.exe", {}, 0, 8 << 20), facts("b.exe", {}, 0, 1 << 16));
        row("processor", facts("viewer.exe", {}, 4), arm);
        row("helper rather than what cannot run", facts("setup.exe"), arm);
    }
    void likelihood() {
        QFETCH(ProgramFacts, likely);
        QFETCH(ProgramFacts, other);
        QVERIFY(ProgramLikelihood::of(likely) > ProgramLikelihood::of(other));
    }
};

QTEST_GUILESS_MAIN(AddRequestTest)
#include "AddRequestTest.moc"
