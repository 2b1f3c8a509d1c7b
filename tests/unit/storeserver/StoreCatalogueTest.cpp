#include <sys/resource.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "storeserver/catalogue/CatalogueLoader.h"
#include "support/EnvironmentGuard.h"
#include "support/StoreFiles.h"
#include "support/Table.h"

using namespace StoreServer;
using TestSupport::StoreFiles;
using TestSupport::Table;

namespace {

QStringList idsOf(const Page& page) {
    QStringList ids;
    for (const QJsonValue& app :
         QJsonDocument::fromJson('[' + QByteArray::fromStdString(page.items) + ']').array())
        ids += app.toObject()["appInfoId"].toString();
    return ids;
}

QString faultsOf(const CatalogueLoader::Result& result) {
    QStringList lines;
    for (const Fault& fault : result.faults)
        lines += fault.toString();
    return lines.join('\n');
}

}  // namespace

class StoreCatalogueTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_files = std::make_unique<StoreFiles>();
        m_files->add("notes", {7, "Notes", "记事本", 1, 50, 4, "2024-05-01"});
        m_files->add("seven-zip", {8, "7-Zip", "压缩", 2, 90, 4, "2024-03-01"});
        m_files->add("note-pad", {9, "Finé Notes Pad", "微信电脑版", 1, 70, 2, "2024-04-01"});
        m_loader = std::make_unique<CatalogueLoader>(m_files->path(), 2);
        m_first = m_loader->refresh();
    }

    void votesAreTheScore() {
        // Either name counts, in any spelling; 3.5 becomes 4.
        m_loader->setVotes({{voteKey("FINE notes  pad"), {{1, 0, 1, 1}, {2, 0, 3, 1}}},
                            {voteKey("微信电脑版"), {{3, 0, 5, 1}, {4, 0, 5, 1}}}});
        auto rated = m_loader->refresh().catalogue;
        QVERIFY(rated->reader(0).app("note-pad", {}, {})->find("\"score\":4") != std::string::npos);
        m_loader->setVotes({});
        rated = m_loader->refresh().catalogue;
        QVERIFY(rated->reader(0).app("note-pad", {}, {})->find("\"score\":2") != std::string::npos);
        QVERIFY(!m_loader->refresh().catalogue);
    }

    void kindsOfProblemsChange() {
        QVERIFY(m_first.catalogue->issueTypes().find("{\"enName\":\"Does not start\"") != std::string::npos);
        m_files->write("issue-types.yml", "[{id: x, names: {zh: 甲}}]");
        QCOMPARE(m_loader->refresh().catalogue->issueTypes(),
                 std::string("{\"enName\":\"甲\",\"id\":\"x\",\"name\":\"甲\"}"));
        m_files->write("issue-types.yml", "broken: [");
        const CatalogueLoader::Result broken = m_loader->refresh();
        QVERIFY(!broken.catalogue && faultsOf(broken).startsWith("issue-types.yml: Line 1"));
    }

    void lists_data() {
        const Table<int, QString, bool, int, QStringList, int> row("category", "field", "isAscending", "page",
                                                                   "ids", "total");
        row("updated", 0, "u", false, 1, {"notes", "note-pad"}, 3);
        row("second page", 0, "u", false, 2, {"seven-zip"}, 3);
        row("after the last", 0, "u", false, 3, {}, 3);
        row("far after", 0, "u", false, 2147483647, {}, 3);
        row("oldest", 0, "u", true, 1, {"seven-zip", "note-pad"}, 3);
        row("installations", 0, "i", false, 1, {"seven-zip", "note-pad"}, 3);
        row("score, then installations", 0, "s", false, 1, {"seven-zip", "notes"}, 3);
        row("category", 1, "i", false, 1, {"note-pad", "notes"}, 2);
        row("category, least score", 1, "s", true, 1, {"note-pad", "notes"}, 2);
        row("no such category", 5, "u", false, 1, {}, 0);
    }
    void lists() {
        QFETCH(int, category);
        QFETCH(QString, field);
        QFETCH(bool, isAscending);
        QFETCH(int, page);
        ListQuery query;
        query.field = SortField(QString("uis").indexOf(field));
        query.isAscending = isAscending;
        query.page = {page, 2};
        if (category > 0)
            query.category = category;
        const Page result = m_first.catalogue->reader(1).list(query, {});
        QTEST(idsOf(result), "ids");
        QTEST(int(result.total), "total");
    }

    void equalsAreInOneOrder_data() {
        const Table<int, bool> row("field", "isAscending");
        for (const int field : {0, 1, 2}) {
            row(qPrintable(QString("%1 up").arg(field)), field, true);
            row(qPrintable(QString("%1 down").arg(field)), field, false);
        }
    }
    void equalsAreInOneOrder() {
        QFETCH(int, field);
        QFETCH(bool, isAscending);
        StoreFiles files;
        for (const int id : {1, 2, 3, 4})
            files.add(QString("a%1").arg(id), {id, "A", "甲", 1, 0, 3, "2024-05-01", id > 2});
        ListQuery query{{}, SortField(field), isAscending, {1, 3}};
        const auto catalogue = CatalogueLoader(files.path(), 1).refresh().catalogue;
        CatalogueReader& reader = catalogue->reader(0);
        QCOMPARE(idsOf(reader.list(query, {})), QStringList({"a3", "a4", "a1"}));
        query.category = 1;
        query.page.pageIndex = 2;
        QCOMPARE(idsOf(reader.list(query, {})), QStringList("a2"));
    }

    void searches_data() {
        const Table<QString, QStringList> row("text", "ids");
        row("name before other places", "notes", {"notes", "note-pad"});
        row("inside a word", "OTE", {"note-pad", "notes"});
        row("two characters", "7-", {"seven-zip"});
        row("id", "seven-zip", {"seven-zip"});
        row("one Chinese character", "信", {"note-pad"});
        row("Chinese within", "电脑", {"note-pad"});
        row("Chinese, other order", "脑电", {});
        row("without its accent", "FINE", {"note-pad"});
        row("accents typed", "nótés", {"notes", "note-pad"});
        row("all words", "微信 pad", {"note-pad"});
        row("brief", "编辑器", {"seven-zip", "note-pad", "notes"});
        row("other language", "压缩", {"seven-zip"});
        row("description", "一二", {"seven-zip", "note-pad", "notes"});
        row("wildcards", "%%%", {});
        row("syntax", "\"OR NEAR(a* b) {x}:^", {});
        row("nothing", "", {});
    }
    void searches() {
        QFETCH(QString, text);
        const Page result = m_first.catalogue->reader(0).search(text.toStdString(), {1, 20}, {});
        QTEST(idsOf(result), "ids");
        QCOMPARE(int(result.total), idsOf(result).size());
    }

    void pagesOfASearch() {
        const Page second = m_first.catalogue->reader(0).search("编辑", {2, 2}, {});
        QCOMPARE(idsOf(second), QStringList("notes"));
        QCOMPARE(second.total, 3LL);
    }

    void findsOne_data() {
        const Table<QString, int, bool> row("appInfoId", "appId", "isFound");
        row("both", "notes", 7, true);
        row("id alone", "notes", 0, true);
        row("number alone", "", 7, true);
        row("of two applications", "notes", 8, false);
        row("unknown", "notez", 0, false);
        row("none", "", 0, false);
    }
    void findsOne() {
        QFETCH(QString, appInfoId);
        QFETCH(int, appId);
        const auto id = appId > 0 ? std::make_optional<long long>(appId) : std::nullopt;
        const auto record = m_first.catalogue->reader(0).app(appInfoId.toStdString(), id, {});
        QTEST(record.has_value(), "isFound");
    }

    void recordHasEveryField() {
        const Rendering chinese{Language::Chinese, "http://h/icons/"};
        m_files->write("apps/notes/icon.svg", StoreFiles::iconText() + "\n");
        const auto record = m_loader->refresh().catalogue->reader(0).app("notes", {}, chinese);
        const QJsonObject app = QJsonDocument::fromJson(QByteArray::fromStdString(record.value())).object();
        QCOMPARE(app.size(), 14);
        QCOMPARE(app["appName"].toString(), QString("记事本"));
        QCOMPARE(app["packageSize"].toDouble(), 123456789.0);
        QCOMPARE(app["descInfo"].toString(), QString("一二"));
        const QString icon = app["iconSaveKey"].toString();
        QVERIFY(icon.startsWith("http://h/icons/notes-"));
        QDir(m_files->path("apps/notes")).remove("icon.svg");
        const auto bare = m_loader->refresh().catalogue->reader(0).app("notes", {}, chinese);
        QVERIFY(bare->find("\"iconSaveKey\":\"\"") != std::string::npos);
    }

    void onlyChangesMakeACatalogue() {
        QCOMPARE(faultsOf(m_first), QString());
        QVERIFY(!m_loader->refresh().catalogue);
        m_files->add("notes", {17, "Notes", "笔记", 2, 50, 4, "2024-05-01"});
        m_files->remove("note-pad");
        const CatalogueLoader::Result second = m_loader->refresh();
        CatalogueReader& reader = second.catalogue->reader(0);
        QCOMPARE(second.catalogue->appCount(), 2LL);
        QCOMPARE(idsOf(reader.search("笔记", {}, {})), QStringList("notes"));
        QVERIFY(idsOf(reader.search("记事本", {}, {})).isEmpty());
        QVERIFY(reader.app("", 17, {}) && !reader.app("", 7, {}) && !reader.manifest("note-pad"));
        // Those who still have the first are not disturbed.
        QVERIFY(m_first.catalogue->reader(0).manifest("note-pad"));
    }

    void numbersMayBeExchanged() {
        m_files->add("notes", {8, "Notes", "记事本"});
        m_files->add("seven-zip", {7, "7-Zip", "压缩"});
        const CatalogueLoader::Result result = m_loader->refresh();
        QCOMPARE(faultsOf(result), QString());
        QVERIFY(result.catalogue->reader(0).app("notes", 8, {}));
        QVERIFY(result.catalogue->reader(0).app("seven-zip", 7, {}));
    }

    void keepsWhatWasGood_data() {
        const Table<QString, QByteArray, QString> row("file", "content", "fault");
        row("facts", "apps/notes/store.yml", "appId: [", "apps/notes/store.yml: Line");
        row("manifest", "apps/notes/manifest.yml", "1", "apps/notes/manifest.yml: ");
        row("number of another", "apps/notes/store.yml", StoreFiles::storeText({8, "New", "新"}),
            "apps/notes/store.yml: The appId 8 is that of seven-zip.");
        row("category that is not there", "apps/notes/store.yml", StoreFiles::storeText({7, "New", "新", 3}),
            "apps/notes/store.yml: No category has the id 3.");
        row("categories", "categories.yml", "", "categories.yml: The text is empty.");
    }
    void keepsWhatWasGood() {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(QString, fault);
        m_files->write(file, content);
        m_files->add("new", {30, "New one", "新"});
        for (int round = 0; round < 2; ++round) {
            const CatalogueLoader::Result result = m_loader->refresh();
            QVERIFY2(faultsOf(result).startsWith(fault), qPrintable(faultsOf(result)));
            QCOMPARE(result.catalogue != nullptr, round == 0);
            if (result.catalogue) {
                QCOMPARE(idsOf(result.catalogue->reader(0).search("记事本", {}, {})), QStringList("notes"));
                QVERIFY(result.catalogue->reader(0).manifest("new"));
            }
        }
    }

    void applicationsStayWhenTheyCannotBeListed() {
        rlimit limit = {};
        QCOMPARE(::getrlimit(RLIMIT_NOFILE, &limit), 0);
        const rlimit none{0, limit.rlim_max};
        QCOMPARE(::setrlimit(RLIMIT_NOFILE, &none), 0);
        const CatalogueLoader::Result result = m_loader->refresh();
        QCOMPARE(::setrlimit(RLIMIT_NOFILE, &limit), 0);
        QVERIFY(!result.catalogue);
        QVERIFY2(faultsOf(result).startsWith("apps: The directory is missing"), qPrintable(faultsOf(result)));
        QVERIFY(!m_loader->refresh().catalogue);
    }

    void tellsThatThereIsNoRoomForACatalogue() {
        m_files->add("new", {30, "New one", "新"});
        {
            TestSupport::EnvironmentGuard guard;
            guard.set("TMPDIR", "/proc");
            const QString faults = faultsOf(m_loader->refresh());
            QCOMPARE(faults, QString("catalogue: It cannot be written: No such file or directory."));
        }
        QVERIFY(m_loader->refresh().catalogue->reader(0).manifest("new"));
    }

    void withoutADirectoryThereIsNone() {
        CatalogueLoader nowhere(m_files->path("nowhere"), 1);
        const CatalogueLoader::Result result = nowhere.refresh();
        QVERIFY(!result.catalogue);
        QVERIFY2(faultsOf(result).contains("apps: The directory is missing"), qPrintable(faultsOf(result)));
    }

private:
    std::unique_ptr<StoreFiles> m_files;
    std::unique_ptr<CatalogueLoader> m_loader;
    CatalogueLoader::Result m_first;
};

QTEST_GUILESS_MAIN(StoreCatalogueTest)
#include "StoreCatalogueTest.moc"
