#include <QDateTime>

#include "core/ImageCache.h"
#include "core/LaunchTarget.h"
#include "core/LeaveRule.h"
#include "core/ServiceAgreement.h"
#include "core/base/Paths.h"
#include "support/Table.h"
#include "support/TestHome.h"

using T = LaunchTarget;
using LeaveRule::Ended;
using LeaveRule::Verdict;

Q_DECLARE_METATYPE(LeaveRule::Facts)

/// The decisions of a start, without a window or a bus.
class CommandLineTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;

private Q_SLOTS:
    void target_data() {
        // rest: bottle and uuid, or the file's name
        const TestSupport::Table<QString, int, int, QString> row("url", "kind", "debugKind", "rest");
        row("empty", "", T::Invalid, T::Invalid, "");
        row("program", "lumorawine://b/u", T::StoredProgram, T::Missing, "b|u");
        row("public bottle", "lumorawine://public/b/u", T::StoredProgram, T::Missing, "public/b|u");
        row("no uuid", "lumorawine://b/", T::StoredProgram, T::Missing, "b|");
        row("no slash", "lumorawine://b", T::Invalid, T::Missing, "");
        row("slash first", "lumorawine:///u", T::Invalid, T::Missing, "");
        row("exe", "@/a.EXE", T::Executable, T::Executable, "a.EXE");
        row("msi as url", "file://@/b c.msi", T::Executable, T::Executable, "b c.msi");
        row("encoded url", "file://@/b%20c.msi", T::Executable, T::Executable, "b c.msi");
        row("percent in a name", "file://@/%41.exe", T::Executable, T::Executable, "%41.exe");
        row("bat", "@/a.bat", T::OtherFile, T::Executable, "a.bat");
        row("msp", "@/a.msp", T::OtherFile, T::Executable, "a.msp");
        row("screen saver", "@/a.scr", T::Executable, T::Executable, "a.scr");
        row("program without suffix", "@/a", T::Executable, T::Executable, "a");
        row("text", "@/a.txt", T::OtherFile, T::OtherFile, "a.txt");
        row("cxb", "@/a.cxb", T::PackageFile, T::PackageFile, "a.cxb");
        row("link", "@/link.exe", T::Executable, T::Executable, "a.EXE");
        row("missing", "@/none.exe", T::Missing, T::Missing, "");
    }
    void target() {
        QFETCH(QString, url);
        QFETCH(QString, rest);
        for (const char* name : {"a.EXE", "b c.msi", "%41.exe", "a.bat", "a.msp", "a.cxb", "a.txt"})
            m_home.write(name, "x");
        for (const char* name : {"a.scr", "a"})
            m_home.write(name, "MZ");
        QFile::link(m_home.path() + "/a.EXE", m_home.path() + "/link.exe");
        url.replace("@", m_home.path());
        const LaunchTarget target = LaunchTarget::fromUrl(url);
        QTEST(int(target.kind), "kind");
        QTEST(int(LaunchTarget::fromDebugUrl(url).kind), "debugKind");
        const bool isStored = target.kind == T::StoredProgram;
        QCOMPARE(isStored ? target.bottle + "|" + target.uuid : QFileInfo(target.path).fileName(), rest);
    }

    void opening() {
        m_home.write("a b.d/c.TXT", "x");
        QVERIFY(QDir::setCurrent(m_home.path()));
        const QStringList rows[] = {
            // words | extension | file
            {"@/a b.d/c.TXT", "|", ".txt", "@/a b.d/c.TXT"},
            {"a b.d/c.TXT", "|", ".txt", "@/a b.d/c.TXT"},
            {"file://@/a%20b.d/c.TXT", "|", ".txt", "@/a b.d/c.TXT"},
            {"@/none.Doc", "|", ".doc", "@/none.Doc"},
            {"Note:a.b", "|", "note", "Note:a.b"},
            {".X", "@/a b.d/c.TXT", "|", ".X", "@/a b.d/c.TXT"},
        };
        for (QStringList row : rows) {
            row.replaceInStrings("@", m_home.path());
            const OpenTarget target = OpenTarget::fromWords(QStringList{"b"} + row.mid(0, row.indexOf("|")));
            QCOMPARE((QStringList{target.extension, target.file}), row.mid(row.indexOf("|") + 1));
        }
    }

    void agreement() {
        for (const char* recorded : {"", "3.2.9", "soon"})
            QVERIFY2(ServiceAgreement::mustAsk(recorded), recorded);
        for (const char* recorded : {"3.3", "3.3.4.008", "10.0"})
            QVERIFY2(!ServiceAgreement::mustAsk(recorded), recorded);
    }

    /// One letter for what has ended (last Window, Launch, Installation, Start, Done: pending work, User:
    /// quit) and the verdict on it: -, later or quit.
    void leaving_data() {
        const TestSupport::Table<LeaveRule::Facts, QString> row("facts", "verdicts");
        const auto with = [](std::initializer_list<bool LeaveRule::Facts::*> set) {
            LeaveRule::Facts facts;
            for (const auto fact : set)
                facts.*fact = true;
            return facts;
        };
        using F = LeaveRule::Facts;
        row("nothing is left", {}, "W:quit L:quit I:quit S:quit D:quit U:quit");
        row("a launch", with({&F::hasRunner}), "W:- L:- I:- S:- D:- U:quit");
        row("a set-up", with({&F::isSettingUp}), "W:- L:- I:- S:- D:- U:quit");
        row("a window", with({&F::hasVisibleWindow}), "W:- L:- I:- S:- D:- U:quit");
        row("a start that asks", with({&F::isHandlingStart}), "W:- L:- I:- S:- D:- U:quit");
        row("a start behind it", with({&F::hasWaitingStarts}), "W:- L:- I:- S:- D:- U:quit");
        row("service", with({&F::isService}), "W:quit L:quit I:quit S:- D:- U:quit");
        row("script", with({&F::isScriptRunning}), "W:quit L:quit I:quit S:- D:- U:quit");
        row("pending work", with({&F::hasPendingWork}), "W:later L:later I:later S:later D:later U:later");
        row("overdue work", with({&F::hasPendingWork, &F::isOverdue}),
            "W:quit L:quit I:quit S:quit D:quit U:quit");
        row("overdue work and a download", with({&F::hasPendingWork, &F::isOverdue, &F::hasTransfer}),
            "W:later L:later I:later S:later D:later U:quit");
        row("service with work", with({&F::isService, &F::hasPendingWork}),
            "W:later L:later I:later S:- D:- U:later");
        row("a launch and overdue work", with({&F::hasRunner, &F::hasPendingWork, &F::isOverdue}),
            "W:- L:- I:- S:- D:- U:quit");
    }
    void leaving() {
        QFETCH(LeaveRule::Facts, facts);
        QStringList verdicts;
        for (const auto& [letter, ended] : {std::pair("W", Ended::LastWindow),
                                            {"L", Ended::Launch},
                                            {"I", Ended::SetUp},
                                            {"S", Ended::Start},
                                            {"D", Ended::Work},
                                            {"U", Ended::User}}) {
            const Verdict verdict = LeaveRule::of(ended, facts);
            verdicts << QString("%1:%2").arg(letter, verdict == Verdict::Stay         ? "-"
                                                     : verdict == Verdict::LeaveLater ? "later"
                                                                                      : "quit");
        }
        QTEST(verdicts.join(' '), "verdicts");
    }

    void imageCache() {
        const QDir cache(Paths::imageCacheDir());
        QVERIFY(cache.mkpath("."));
        for (const auto& [name, days] : {std::pair("old", 16), {"new", 14}}) {
            QFile file(cache.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            QVERIFY(
                file.setFileTime(QDateTime::currentDateTime().addDays(-days), QFile::FileModificationTime));
        }
        purgeImageCache(15);
        QCOMPARE(cache.entryList(QDir::Files), QStringList{"new"});
    }
};

QTEST_GUILESS_MAIN(CommandLineTest)
#include "CommandLineTest.moc"
