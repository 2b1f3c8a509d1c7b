#include <QFile>
#include <QMetaMethod>
#include <QXmlStreamReader>
#include <QtTest>

#include "backend/BottlesConfig.h"
#include "backend/ServiceErrorText.h"
#include "bottleservice/result/Reason.h"
#include "support/fakeservice/Scenario.h"

/// The contract file of the bottle interface against the proxy's signals and the stand-in's methods, both
/// ways. (What the proxy calls is checked against the stand-in, which refuses everything else.)
class WireContractTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        QFile file(TEST_SOURCE_DIR "/src/platform/bottleservice/wire/com.lumora.Manager.Bottles.xml");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&file);
        QString* signature = nullptr;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            const auto attribute = [&xml](const char* key) { return xml.attributes().value(key).toString(); };
            if (xml.name() == "method" || xml.name() == "signal")
                signature = &(xml.name() == "method" ? methods : busSignals)[attribute("name")];
            else if (xml.name() == "arg" && attribute("direction") != "out")
                *signature += attribute("type");
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    }

    void methodsOfTheStandIn() {
        QVERIFY(!methods.isEmpty());
        for (auto it = methods.cbegin(); it != methods.cend(); ++it)
            QCOMPARE(it.key() + " " + Scenario::bottleSignature(it.key()), it.key() + " " + it.value());
        QCOMPARE(Scenario::bottleMethods(), QStringList(methods.keys()));
    }

    void signalsOfTheProxy() {
        const QMap<QString, QString> letters = {{"QString", "s"}, {"uint", "u"}, {"int", "i"}};
        const QStringList local = {"bottlesCreated", "dependecyInstalled", "endRequested"};
        QMap<QString, QString> declared;
        const QMetaObject& meta = BottlesConfig::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod method = meta.method(i);
            const QString name = QString::fromLatin1(method.name());
            if (method.methodType() != QMetaMethod::Signal || local.contains(name))
                continue;
            QString signature;
            for (const QByteArray& type : method.parameterTypes())
                signature += letters.value(QString::fromLatin1(type), "?");
            declared.insert(name, signature);
        }
        QCOMPARE(declared, busSignals);
    }

    /// Each reason of the service has its text here, with the same arguments.
    void reasonsOfTheService() {
        const QStringList arguments{"one", "%1", "three", "four"};
        for (int code = Reason::NoCode + 1; code < Reason::CodeCount; ++code) {
            Reason reason(Reason::Code(code), arguments);
            QCOMPARE(ServiceErrorText::of(reason.toJson(), "not known"), reason.text());
            reason += "In English only.";
            QCOMPARE(ServiceErrorText::of(reason.toJson(), "not known"), reason.text());
        }
        QCOMPARE(ServiceErrorText::of(QJsonArray{QJsonObject{{"code", "of-tomorrow"}}}, "In English."),
                 QString("In English."));
        QCOMPARE(ServiceErrorText::of(QJsonArray{7, "x", QJsonArray()}, "In English."),
                 QString("In English."));
    }

private:
    QMap<QString, QString> methods;
    QMap<QString, QString> busSignals;
};

QTEST_GUILESS_MAIN(WireContractTest)
#include "WireContractTest.moc"
