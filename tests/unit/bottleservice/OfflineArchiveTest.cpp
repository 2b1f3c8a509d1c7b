#include <archive.h>
#include <archive_entry.h>
#include <sys/resource.h>
#include <csignal>

#include <QCryptographicHash>

#include "bottleservice/components/OfflineArchive.h"
#include "bottleservice/components/OfflineCheck.h"
#include "bottleservice/components/Recipe.h"
#include "bottleservice/components/Sources.h"
#include "support/ChildProcess.h"
#include "support/LogCapture.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::readFile;
using TestSupport::Table;
using TestSupport::TestHome;

namespace {

const std::atomic_bool NotCancelled{false};

struct Entry {
    QByteArray name;
    QByteArray content;
    int type = AE_IFREG;
    const char* hardLink = nullptr;
};
using Entries = QVector<Entry>;

QByteArray packed(const Entries& entries, bool isCompressed = false) {
    QByteArray buffer(4 * 1024 * 1024, 0);
    size_t used = 0;
    archive* writer = archive_write_new();
    archive_write_set_format_pax_restricted(writer);
    if (isCompressed)
        archive_write_add_filter_gzip(writer);
    archive_write_open_memory(writer, buffer.data(), size_t(buffer.size()), &used);
    for (const Entry& each : entries) {
        archive_entry* entry = archive_entry_new();
        archive_entry_set_pathname(entry, each.name.constData());
        archive_entry_set_filetype(entry, unsigned(each.type));
        archive_entry_set_perm(entry, 0644);
        if (each.type == AE_IFLNK)
            archive_entry_set_symlink(entry, each.content.constData());
        else if (each.hardLink)
            archive_entry_set_hardlink(entry, each.hardLink);
        else
            archive_entry_set_size(entry, each.content.size());
        archive_write_header(writer, entry);
        if (each.type == AE_IFREG && !each.hardLink)
            archive_write_data(writer, each.content.constData(), size_t(each.content.size()));
        archive_entry_free(entry);
    }
    archive_write_close(writer);
    archive_write_free(writer);
    return buffer.left(int(used));
}

OfflineList::File fileOf(const QByteArray& content) {
    return {content.size(), QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex()};
}

/// Two components that share a file.
Entry listEntry(const QMap<QString, OfflineList::File>& files = {{"a.exe", fileOf("first")},
                                                                 {"b.cab", fileOf("second")}}) {
    OfflineList list;
    list.files = files;
    list.components = {{"one", {"a.exe"}}, {"two", {"a.exe", "b.cab"}}};
    return {"components.json", list.toJson()};
}

const Entry A{"files/a.exe", "first"}, B{"files/b.cab", "second"};

}  // namespace

/// Files of exported components: what is written is read, and nothing else is.
class OfflineArchiveTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void lists_data() {
        const Table<QString, QString> row("text", "fault");
        const QString sum(64, 'A');
        const QString whole = QString(R"({"format":"cellarix-components","version":1,"components":{"c":["f"]},
            "files":{"f":{"size":7,"sha256":"%1"}}})")
                                  .arg(sum);
        const auto with = [&whole](const QString& from, const QString& to) {
            return QString(whole).replace(from, to);
        };
        row("good", whole, "");
        row("no JSON", whole.chopped(1), "no list");
        row("another format", with("cellarix-components", "x"), "no list");
        row("too long", whole + QString(OfflineList::MaximumBytes, ' '), "no list");
        row("of tomorrow", with(":1", ":2"), "newer");
        row("no component", with(R"("c":["f"])", ""), "no components");
        row("name of a component", with("\"c\"", "\"../c\""), "impossible name");
        row("name of a file", with("\"f\"", "\"a/f\""), "impossible name, size or checksum");
        row("hidden file", with("\"f\"", "\".f\""), "impossible name, size or checksum");
        row("unlisted file", with("[\"f\"]", "[\"g\"]"), "not listed");
        row("number as a file", with("[\"f\"]", "[1]"), "not listed");
        row("half a byte", with(":7", ":7.5"), "impossible name, size or checksum");
        row("less than nothing", with(":7", ":-1"), "impossible name, size or checksum");
        row("huge", with(":7", ":1e300"), "impossible name, size or checksum");
        row("short checksum", with(sum, "AA"), "impossible name, size or checksum");
    }
    void lists() {
        QFETCH(QString, text);
        QFETCH(QString, fault);
        QString told;
        const auto list = OfflineList::parse(text.toUtf8(), &told);
        QCOMPARE(list.has_value(), fault.isEmpty());
        QVERIFY2(fault.isEmpty() ? told.isEmpty() : told.contains(fault), qPrintable(told));
        if (list)
            QCOMPARE(list->files["f"].sha256, QByteArray(64, 'a'));
    }

    void hostile_data() {
        const Table<QByteArray, QString> row("archive", "fault");
        const Entry list = listEntry();
        row("good", packed({list, A, B}), "");
        row("any order", packed({list, B, A}), "");
        row("empty", "", "");
        row("no archive", "MZ, a program", "");
        row("compressed", packed({list, A, B}, true), "");
        row("cut in a file", packed({list, A, {"files/b.cab", QByteArray(9999, 'b')}}).left(4000), "");
        row("list not first", packed({A, list, B}), "no list");
        row("name up", packed({list, A, B, {"files/../x", "x"}}), "not in its list");
        row("absolute name", packed({list, A, B, {"/tmp/x", "x"}}), "not in its list");
        row("name beside the files", packed({list, {"a.exe", "first"}, B}), "not in its list");
        row("link", packed({list, A, {"files/b.cab", "/etc/passwd", AE_IFLNK}}), "no ordinary file");
        row("hard link", packed({list, A, {"files/b.cab", "", AE_IFREG, "files/a.exe"}}), "no ordinary file");
        row("directory", packed({list, A, B, {"files/", "", AE_IFDIR}}), "no ordinary file");
        row("pipe", packed({list, A, {"files/b.cab", "", AE_IFIFO}}), "no ordinary file");
        row("device", packed({list, A, {"files/b.cab", "", AE_IFBLK}}), "no ordinary file");
        row("twice", packed({list, A, A, B}), "twice");
        row("list twice", packed({list, A, B, list}), "not in its list");
        row("missing", packed({list, A}), "missing");
        row("unlisted", packed({list, A, B, {"files/c.exe", "x"}}), "not in its list");
        row("changed", packed({list, A, {"files/b.cab", "sECOND"}}), "b.cab is not as");
        row("longer", packed({list, A, {"files/b.cab", "second and more"}}), "b.cab is not as");
        row("shorter", packed({list, A, {"files/b.cab", "sec"}}), "b.cab is not as");
        OfflineList::File huge = fileOf("second");
        huge.size = Source::MaximumBytes;
        row("bomb", packed({listEntry({{"a.exe", fileOf("first")}, {"b.cab", huge}}), A, B}), "shorter than");
    }
    void hostile() {
        QFETCH(QByteArray, archive);
        QFETCH(QString, fault);
        const TestHome home;
        const QString out = home.path() + "/deep/out";
        QVERIFY(QDir().mkpath(out));
        OfflineList list;
        const TestSupport::LogCapture log;
        const Reason reason =
            OfflineArchive::unpack(home.write("deep/x.tar", archive), out, &list, NotCancelled);
        const bool isGood =
            QString(QTest::currentDataTag()).contains(QRegularExpression("^(good|any order)$"));
        QCOMPARE(reason.isEmpty(), isGood);
        if (!fault.isEmpty())
            QVERIFY2(reason.text().startsWith("x.tar ") && log.contains(fault), qPrintable(log.text()));
        QCOMPARE(
            QDir(home.path() + "/deep").entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList({"out", "x.tar"}));
        if (isGood)
            QCOMPARE(readFile(out + "/a.exe") + readFile(out + "/b.cab"), QByteArray("firstsecond"));
    }

    void writing() {
        const TestHome home;
        home.write("store/a.exe", "first");
        home.write("store/b.cab", QByteArray(3000000, 'b'));
        const QString store = home.path() + "/store", target = home.path() + "/out/e.tar";
        const QString record = home.path() + "/record";
        QVERIFY(QDir().mkpath(home.path() + "/out") && QDir().mkpath(home.path() + "/read"));
        OfflineList list;
        list.components = {{"one", {"a.exe"}}, {"two", {"a.exe", "b.cab"}}};
        list.files = {{"a.exe", {}}, {"b.cab", {}}};
        QVERIFY(OfflineArchive::measure(&list, store, NotCancelled).isEmpty());
        const auto write = [&] { return OfflineArchive::write(target, list, store, record, NotCancelled); };
        const auto left = [&home] {
            return QDir(home.path() + "/out")
                .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        };
        // A disk with room for less: the limit is of this process, its signal a plain error.
        const auto before = std::signal(SIGXFSZ, SIG_IGN);
        rlimit old = {};
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &old), 0);
        const rlimit small{1000000, old.rlim_max};
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
        const Reason full = write();
        ::setrlimit(RLIMIT_FSIZE, &old);
        std::signal(SIGXFSZ, before);
        QVERIFY2(full.text().contains("e.tar"), qPrintable(full.text()));
        QCOMPARE(left(), QStringList());

        QCOMPARE(write().text(), QString());
        QCOMPARE(left(), QStringList("e.tar"));
        QVERIFY(!QFile::exists(record));
        OfflineList read;
        QCOMPARE(OfflineArchive::unpack(target, home.path() + "/read", &read, NotCancelled).text(),
                 QString());
        QCOMPARE(read.components, list.components);
        QCOMPARE(readFile(home.path() + "/read/b.cab"), QByteArray(3000000, 'b'));
        // Other tools read it, too; what is there is not replaced.
        const auto listed = TestSupport::runProcess("tar", {"-tf", target});
        QCOMPARE(listed.output.trimmed(), QString("components.json\nfiles/a.exe\nfiles/b.cab"));
        QVERIFY(write().text().startsWith("Cannot write"));
        QVERIFY(QFile::remove(store + "/b.cab") && QFile::remove(target));
        QVERIFY(!write().isEmpty());
        QCOMPARE(left(), QStringList());
        // What can't be read goes alone, with its component.
        QCOMPARE(OfflineArchive::measure(&list, store, NotCancelled).keys(), QStringList("two"));
        QCOMPARE(list.files.keys() + list.components.keys(), QStringList({"a.exe", "one"}));
        for (int i = 0; i <= OfflineList::MaximumFiles; ++i)
            list.files.insert(QString::number(i), {});
        QCOMPARE(write().text(), Reason(Reason::ExportTooLarge).text());
    }

    /// The record of a killed service leads to its own unfinished file, and to nothing else.
    void unfinished_data() {
        const Table<QString, bool> row("name", "isRemoved");
        row("ours", ".e.tar.cellarix-new", true);
        row("not hidden", "e.tar.cellarix-new", false);
        row("another", ".e.tar", false);
    }
    void unfinished() {
        QFETCH(QString, name);
        const TestHome home;
        const TestSupport::LogCapture log;
        const QString file = home.write(name, "half");
        const QString record = home.write("record", file.toUtf8());
        OfflineArchive::removeUnfinished(record);
        QTEST(!QFile::exists(file), "isRemoved");
        QVERIFY(!QFile::exists(record));
        OfflineArchive::removeUnfinished(record);
    }

    void verdicts() {
        const TestHome home;
        home.write("dependency.json", R"({
            "base":{"recipe":{"steps":[{"run":"base.exe"}]}},
            "top":{"needs":["mid"],"recipe":{"steps":[{"run":"top.exe"}]}},
            "mid":{"needs":["base"],"recipe":{"steps":[{"run":"mid.exe"},{"run":"mid64.exe","only":"win64"}]}},
            "plain":{"recipe":{"steps":[{"override":["d3d9"],"mode":"native"}]}},
            "tricks":{"recipe":{"winetricks":"tricks"}},
            "far":{"needs":["vain"],"recipe":{"steps":[{"run":"base.exe"}]}},
            "vain":{"needs":["never-heard"],"recipe":{"steps":[{"run":"base.exe"}]}},
            "loop":{"needs":["loop"],"recipe":{"steps":[{"run":"base.exe"}]}}})");
        home.write("sources.json", QString(R"({"files":{"base.exe":{"sha256":"%1","size":5},"mid.exe":{}}})")
                                       .arg(QString(fileOf("first").sha256))
                                       .toUtf8());
        const Recipes recipes(home.path(), home.path() + "/none");
        const auto verdict =
            OfflineCheck::verdict({"top", "base", "plain", "tricks", "loop", "never-heard", "far"},
                                  {"base.exe", "top.exe", "mid.exe"}, recipes);
        QCOMPARE(verdict.valid, QStringList({"base", "plain"}));
        const QMap<QString, QStringList> missing{{"top", {"mid"}},
                                                 {"tricks", {"tricks"}},
                                                 {"loop", {"loop"}},
                                                 {"never-heard", {"never-heard"}},
                                                 {"far", {"never-heard"}}};
        QCOMPARE(verdict.missing, missing);
        QCOMPARE(OfflineCheck::needed("top", recipes), QStringList({"base", "mid"}));
        QCOMPARE(OfflineCheck::inOrder({"top", "never-heard", "base", "top"}, recipes),
                 QStringList({"base", "top", "never-heard"}));
        const Sources sources(home.path(), home.path() + "/none");
        const auto conflict = [&sources](const QString& name, const QByteArray& content) {
            OfflineList list;
            list.files.insert(name, fileOf(content));
            return OfflineCheck::conflict(list, sources, "e.tar").toJson()[0].toObject()["code"].toString();
        };
        QCOMPARE(conflict("base.exe", "first"), QString());
        QCOMPARE(conflict("base.exe", "fIRST"), QString("other-checksum"));
        QCOMPARE(conflict("base.exe", "more than that"), QString("other-size"));
        QCOMPARE(conflict("mid.exe", "any"), QString());
    }
};

QTEST_GUILESS_MAIN(OfflineArchiveTest)
#include "OfflineArchiveTest.moc"
