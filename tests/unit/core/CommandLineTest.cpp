#include <QDateTime>
#include <QTemporaryDir>
#include <QtTest>

#include "core/ImageCache.h"
#include "core/LaunchTarget.h"
#include "core/ServiceAgreement.h"
#include "core/base/Paths.h"
#include "support/TestHome.h"

using TestSupport::TestHome;

/// The decisions of a start, without a window or a bus.
class CommandLineTest : public QObject {
    Q_OBJECT

    TestHome m_home;

private Q_SLOTS:
    void target_data() {
        QTest::addColumn<QString>("url");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("debugKind");
        QTest::addColumn<QString>("rest");  // bottle and uuid, or the file's name
        using T = LaunchTarget;
        QTest::newRow("empty") << "" << int(T::Invalid) << int(T::Invalid) << "";
        QTest::newRow("program") << "lumorawine://b/u" << int(T::StoredProgram) << int(T::Missing) << "b|u";
        QTest::newRow("public bottle")
            << "lumorawine://public/b/u" << int(T::StoredProgram) << int(T::Missing) << "public/b|u";
        QTest::newRow("no uuid") << "lumorawine://b/" << int(T::StoredProgram) << int(T::Missing) << "b|";
        QTest::newRow("no slash") << "lumorawine://b" << int(T::Invalid) << int(T::Missing) << "";
        QTest::newRow("slash first") << "lumorawine:///u" << int(T::Invalid) << int(T::Missing) << "";
        QTest::newRow("exe") << "@/a.EXE" << int(T::Executable) << int(T::Executable) << "a.EXE";
        QTest::newRow("msi as url") << "file://@/b c.msi" << int(T::Executable) << int(T::Executable)
                                    << "b c.msi";
        QTest::newRow("encoded url") << "file://@/b%20c.msi" << int(T::Executable) << int(T::Executable)
                                     << "b c.msi";
        QTest::newRow("percent in a name")
            << "file://@/%41.exe" << int(T::Executable) << int(T::Executable) << "%41.exe";
        QTest::newRow("bat") << "@/a.bat" << int(T::OtherFile) << int(T::Executable) << "a.bat";
        QTest::newRow("msp") << "@/a.msp" << int(T::OtherFile) << int(T::Executable) << "a.msp";
        QTest::newRow("cxb") << "@/a.cxb" << int(T::PackageFile) << int(T::PackageFile) << "a.cxb";
        QTest::newRow("link") << "@/link.exe" << int(T::Executable) << int(T::Executable) << "a.EXE";
        QTest::newRow("missing") << "@/none.exe" << int(T::Missing) << int(T::Missing) << "";
    }

    void target() {
        QFETCH(QString, url);
        QFETCH(QString, rest);
        for (const char* name : {"a.EXE", "b c.msi", "%41.exe", "a.bat", "a.msp", "a.cxb"})
            m_home.write(name, "x");
        QFile::link(m_home.path() + "/a.EXE", m_home.path() + "/link.exe");
        url.replace("@", m_home.path());
        const LaunchTarget target = LaunchTarget::fromUrl(url);
        QTEST(int(target.kind), "kind");
        QTEST(int(LaunchTarget::fromDebugUrl(url).kind), "debugKind");
        if (target.kind == LaunchTarget::StoredProgram)
            QCOMPARE(target.bottle + "|" + target.uuid, rest);
        else
            QCOMPARE(QFileInfo(target.path).fileName(), rest);
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

    void agreement_data() {
        QTest::addColumn<QString>("recorded");
        QTest::addColumn<bool>("ask");
        QTest::newRow("never") << "" << true;
        QTest::newRow("3.2.9") << "3.2.9" << true;
        QTest::newRow("3.3") << "3.3" << false;
        QTest::newRow("3.3.4.008") << "3.3.4.008" << false;
        QTest::newRow("10.0") << "10.0" << false;
        QTest::newRow("nonsense") << "soon" << true;
    }

    void agreement() {
        QFETCH(QString, recorded);
        QTEST(ServiceAgreement::mustAsk(recorded), "ask");
    }

    void imageCache() {
        QDir cache(Paths::imageCacheDir());
        QVERIFY(cache.mkpath("."));
        for (const char* name : {"old", "new"}) {
            QFile file(cache.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            const int days = qstrcmp(name, "old") == 0 ? 16 : 14;
            QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(-days),
                                     QFileDevice::FileModificationTime));
        }
        purgeImageCache(15);
        QCOMPARE(cache.entryList(QDir::Files), QStringList{"new"});
    }
};

QTEST_GUILESS_MAIN(CommandLineTest)
#include "CommandLineTest.moc"
