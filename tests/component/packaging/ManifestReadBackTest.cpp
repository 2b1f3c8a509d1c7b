#include <QSignalSpy>
#include <QtTest>

#include "component/bottleservice/ServiceFixture.h"
#include "feedback/client/AliyunGreenApi.h"
#include "manifest/ManifestReader.h"
#include "packaging/manifest/ManifestExporter.h"
#include "store/install/ManifestFacts.h"

static_assert(ManifestFormRules::MaximumName == ManifestReader::Short);
static_assert(ManifestFormRules::MaximumAddress == ManifestReader::Medium);

/// What a form exports, the installer and the service can read.
class ManifestReadBackTest : public QObject {
    Q_OBJECT

    ServiceFixture m_service;

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_service.start()); }

    void exportsAndReads() {
        const QString id = "7b1b4b1e-0000-4000-8000-000000000001";
        m_service.write("bottles/mine/bottle.yml", "Runner: lumora-wine10-stable\nWindows: win10\n");
        const QString program = R"({"id":"%1","name":"n","path":"C:\\a.exe"})";
        QCOMPARE(m_service.error("updateExternalProgram", {"mine", program.arg(id)}), QString());
        ManifestForm form{"mine", id, "A", "B", "https://a.example/?b=1&c=2", "8.5", "D", "d@e.fg", "H"};
        form.name = QString::fromUtf8("海港: #\"办公\"");
        form.introduction = "One: line\nand 'another'";
        ManifestExporter exporter(new AliyunGreenApi);
        QSignalSpy exported(&exporter, &ManifestExporter::exported);
        exporter.start(form);
        QVERIFY(exported.wait());
        const QByteArray text = TestSupport::readFile(exported[0][0].toString());

        QString error;
        const auto facts = ManifestFacts::read(text, &error);
        QVERIFY2(facts, qPrintable(error));
        QCOMPARE(facts->downloadUrl, form.downloadUrl);
        QCOMPARE(facts->winePackage, QString("lumora-wine10-stable"));
        const auto [manifest, refusal] = ManifestReader::read(text);
        QCOMPARE(refusal, QString());
        QCOMPARE(manifest.name + manifest.introduction, form.name + form.introduction);
        QCOMPARE(manifest.packageSize + manifest.category + manifest.contributor.email,
                 QString("8.5Hd@e.fg"));
        QCOMPARE(manifest.programs.value(0).path, QString("C:\\a.exe"));
    }
};

QTEST_GUILESS_MAIN(ManifestReadBackTest)
#include "ManifestReadBackTest.moc"
