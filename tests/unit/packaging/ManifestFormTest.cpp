#include "packaging/manifest/ManifestForm.h"

#include <QTemporaryDir>

#include "packaging/manifest/RememberedAnswers.h"
#include "support/LogCapture.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::Table;

namespace {

ManifestForm sample() {
    return {"b", "u", "A", "I\n2", "http://a.example", "84.5", "C", "c@d.example", "Office"};
}

}  // namespace

class ManifestFormTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void complete_data() {
        const Table<QString, QString, bool> row("field", "value", "isComplete");
        row("good", "name", "A", true);
        row("no name", "name", "", false);
        row("blank introduction", "introduction", " \n", false);
        row("no contributor", "contributor", "", false);
        row("no category", "category", "", false);
        row("temporary address", "downloadUrl", "https://a.example/?auth_key=1", true);
        row("half an address", "downloadUrl", "http:/", false);
        row("other scheme", "downloadUrl", "ftp://a.example", false);
        row("whole size", "packageSize", "84", true);
        row("half a size", "packageSize", "84.", false);
        row("size with a unit", "packageSize", "84M", false);
        row("long mail", "contributorEmail", "a.b+c%d_e-f@g-h.example.org", true);
        row("short top level", "contributorEmail", "a@b.c", false);
        row("no top level", "contributorEmail", "a@b", false);
        row("two signs", "contributorEmail", "a@b@c.de", false);
    }
    void complete() {
        QFETCH(QString, field);
        QFETCH(QString, value);
        ManifestForm form = sample();
        const QHash<QString, QString*> fields{{"name", &form.name},
                                              {"introduction", &form.introduction},
                                              {"downloadUrl", &form.downloadUrl},
                                              {"packageSize", &form.packageSize},
                                              {"contributor", &form.contributor},
                                              {"contributorEmail", &form.contributorEmail},
                                              {"category", &form.category}};
        *fields[field] = value;
        QTEST(ManifestFormRules::isComplete(form), "isComplete");
    }

    void temporary_data() {
        const Table<QString, bool> row("url", "isTemporary");
        row("plain", "https://a.example/auth/key?x=1", false);
        row("time", "https://a.example/?timestamp=1", true);
        row("key", "https://a.example/?auth_key=1", true);
        row("session", "https://a.example/?x-sid=1", true);
        row("redirect", "https://a.example/?x-redirect=1", true);
    }
    void temporary() {
        QFETCH(QString, url);
        QTEST(ManifestFormRules::isTemporary(url), "isTemporary");
    }

    void introductionIsCut() {
        using ManifestFormRules::cutIntroduction;
        QCOMPARE(cutIntroduction(QString(100, 'a')), QString(100, 'a'));
        QCOMPARE(cutIntroduction(QString(101, 'a')), QString(100, 'a'));
        const QString face = QString::fromUtf8("\xF0\x9F\x98\x80");  // two units
        QCOMPARE(cutIntroduction(QString(99, 'a') + face), QString(99, 'a'));
        QCOMPARE(cutIntroduction(QString(98, 'a') + face + 'b'), QString(98, 'a') + face);
    }

    void onTheWire() {
        QString wanted =
            "{'bottlesName':'b','programUuid':'u','name':'A','introduction':'I\\n2',"
            "'downloadUrl':'http://a.example','packageSize':'84.5','contributor':'C',"
            "'contributorEmail':'c@d.example','category':'Office'}";
        wanted.replace('\'', '"');
        QCOMPARE(sample().toServiceText(), wanted);
        ManifestForm form = sample();
        form.name = "100 %2";
        QCOMPARE(form.textForModeration(), QString("100 %2\nI\n2\nC"));
    }

    void answersAreRemembered() {
        const QTemporaryDir bottle;
        const QString file = bottle.filePath("dump-manifest.json");
        TestSupport::LogCapture log;
        QVERIFY(!RememberedAnswers::read(bottle.path()));
        QVERIFY(RememberedAnswers::write(bottle.path(), sample()));
        QVERIFY(RememberedAnswers::write(bottle.path(), sample()));
        QByteArray wanted =
            "{\n"
            "    'bottlesName': 'b',\n"
            "    'category': 'Office',\n"
            "    'contributor': 'C',\n"
            "    'contributorEmail': 'c@d.example',\n"
            "    'downloadUrl': 'http://a.example',\n"
            "    'introduction': 'I\\n2',\n"
            "    'packageSize': '84.5',\n"
            "    'programUuid': 'u'\n"
            "}\n";
        wanted.replace('\'', '"');
        QCOMPARE(TestSupport::readFile(file), wanted);
        const auto form = RememberedAnswers::read(bottle.path());
        QVERIFY(form && form->contributorEmail == "c@d.example" && form->name.isEmpty());
        QVERIFY(log.lines().isEmpty());
    }

    void answersOfOthers_data() {
        const Table<QByteArray, bool, QString> row("content", "isRead", "category");
        row("half", R"({"category":"Office")", false, "");
        row("a list", "[1]", false, "");
        row("too large", R"({"category":"Office"})" + QByteArray(70000, ' '), false, "");
        row("wrong types", R"({"category":7,"contributor":{}})", true, "");
        row("link", "link", false, "");
    }
    void answersOfOthers() {
        QFETCH(QByteArray, content);
        QFETCH(bool, isRead);
        const QTemporaryDir bottle;
        const QString path = bottle.filePath("dump-manifest.json");
        const QString target = bottle.filePath("target");
        QFile file(content == "link" ? target : path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        if (content == "link")
            QVERIFY(QFile::link(target, path));
        const TestSupport::LogCapture log;
        const auto form = RememberedAnswers::read(bottle.path());
        QCOMPARE(form.has_value(), isRead);
        QCOMPARE(log.lines().size(), isRead ? 0 : 1);
        if (form)
            QTEST(form->category, "category");
        QCOMPARE(RememberedAnswers::write(bottle.path(), sample()), content != "link");
        QVERIFY(content != "link" || TestSupport::readFile(target) == "link");
    }
};

QTEST_GUILESS_MAIN(ManifestFormTest)
#include "ManifestFormTest.moc"
