#include "packaging/manifest/ManifestForm.h"

#include <QJsonDocument>
#include <QTemporaryDir>

#include "core/base/CutText.h"
#include "packaging/manifest/RememberedAnswers.h"
#include "support/LogCapture.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::Table;
using Value = QString ManifestForm::*;
using Problem = ManifestFormRules::Problem;
Q_DECLARE_METATYPE(Value)
Q_DECLARE_METATYPE(Problem)

namespace {

ManifestForm sample() {
    return {"b", "u", "A", "I\n2", "http://a.example", "84.5", "C", "c@d.example", "Office"};
}

}  // namespace

class ManifestFormTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void problems_data() {
        const Table<Value, QString, Problem> row("field", "value", "problem");
        row("good", &ManifestForm::name, "A", Problem::None);
        row("blank introduction", &ManifestForm::introduction, " \n", Problem::Missing);
        row("no category", &ManifestForm::category, "", Problem::Missing);
        row("temporary address", &ManifestForm::downloadUrl, "https://a.example/?auth_key=1", Problem::None);
        row("no host", &ManifestForm::downloadUrl, "http://", Problem::WebAddress);
        row("other scheme", &ManifestForm::downloadUrl, "ftp://a.example", Problem::WebAddress);
        row("whole size", &ManifestForm::packageSize, "84", Problem::None);
        row("size with a unit", &ManifestForm::packageSize, "84M", Problem::Megabytes);
        row("long mail", &ManifestForm::contributorEmail, "a.b+c%d_e-f@g-h.example.org", Problem::None);
        row("short top level", &ManifestForm::contributorEmail, "a@b.c", Problem::Email);
    }
    void problems() {
        QFETCH(Value, field);
        QFETCH(QString, value);
        ManifestForm form = sample();
        form.*field = value;
        QTEST(ManifestFormRules::problemOf(form), "problem");
    }

    void texts() {
        QVERIFY(!ManifestFormRules::isTemporary("https://a.example/?time=1&key=2"));
        for (const char* mark : {"timestamp=", "auth_key=", "x-sid=", "x-redirect="})
            QVERIFY2(ManifestFormRules::isTemporary(QString("https://a.example/?") + mark), mark);
        const QString face = QString::fromUtf8("\xF0\x9F\x98\x80");  // two units
        QCOMPARE(cutText(QString(99, 'a') + face, 100), QString(99, 'a'));
        QCOMPARE(cutText(QString(98, 'a') + face + 'b', 100), QString(98, 'a') + face);
        ManifestForm form = sample();
        form.name = "100 %2";
        QCOMPARE(form.textForModeration(), QString("100 %2\nI\n2\nC"));
    }

    void answersAreRemembered() {
        const QTemporaryDir bottle;
        const TestSupport::LogCapture log;
        QVERIFY(!RememberedAnswers::read(bottle.path()));
        QVERIFY(RememberedAnswers::write(bottle.path(), sample()));
        const QByteArray wanted = R"({"bottlesName":"b","category":"Office","contributor":"C",)"
                                  R"("contributorEmail":"c@d.example","downloadUrl":"http://a.example",)"
                                  R"("introduction":"I\n2","packageSize":"84.5","programUuid":"u"})";
        QCOMPARE(QJsonDocument::fromJson(TestSupport::readFile(bottle.filePath("dump-manifest.json"))),
                 QJsonDocument::fromJson(wanted));
        QVERIFY(RememberedAnswers::read(bottle.path())->contributorEmail == "c@d.example");
        QVERIFY(log.lines().isEmpty());
    }

    void answersOfOthers_data() {
        const Table<QByteArray, bool> row("content", "isRead");
        row("half", R"({"category":"Office")", false);
        row("a list", "[1]", false);
        row("too large", R"({"category":"Office"})" + QByteArray(70000, ' '), false);
        row("wrong types", R"({"category":7,"contributor":{}})", true);
        row("link", "link", false);
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
        QVERIFY(!form || form->category.isEmpty());
        QCOMPARE(RememberedAnswers::write(bottle.path(), sample()), content != "link");
        QVERIFY(content != "link" || TestSupport::readFile(target) == "link");
    }
};

QTEST_GUILESS_MAIN(ManifestFormTest)
#include "ManifestFormTest.moc"
