#include <QFile>
#include <QMetaMethod>
#include <QXmlStreamReader>
#include <QtTest>

#include "backend/BottlesConfig.h"
#include "backend/InstallerManager.h"
#include "backend/OfflineDependency.h"
#include "backend/ServiceErrorText.h"
#include "bottleservice/result/Reason.h"
#include "support/fakeservice/Scenario.h"

namespace {

/// Signatures by name.
struct Contract {
    QMap<QString, QString> methods;
    QMap<QString, QString> busSignals;
    QString error;

    explicit Contract(const QString& part) {
        QFile file(
            QString(TEST_SOURCE_DIR "/src/platform/bottleservice/wire/com.lumora.Manager.%1.xml").arg(part));
        file.open(QIODevice::ReadOnly);
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
        error = xml.errorString();
    }
};

QMap<QString, QString> signalsOf(const QMetaObject& meta, const QStringList& local) {
    const QMap<QString, QString> letters = {{"QString", "s"}, {"uint", "u"}, {"int", "i"}};
    QMap<QString, QString> declared;
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
    return declared;
}

}  // namespace

/// The contract files of the bottle and the installer interface against the proxies' signals, and the first
/// against the stand-in's methods, both ways. (What the proxy calls is checked against the stand-in, which
/// refuses everything else.)
class WireContractTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void methodsOfTheStandIn() {
        const Contract contract("Bottles");
        QCOMPARE(contract.error, QString());
        const auto methods = contract.methods;
        QVERIFY(!methods.isEmpty());
        for (auto it = methods.cbegin(); it != methods.cend(); ++it)
            QCOMPARE(it.key() + " " + Scenario::bottleSignature(it.key()), it.key() + " " + it.value());
        QCOMPARE(Scenario::bottleMethods(), QStringList(methods.keys()));
    }

    void signalsOfTheProxies() {
        QCOMPARE(signalsOf(BottlesConfig::staticMetaObject,
                           {"bottlesCreated", "dependecyInstalled", "endRequested"}),
                 Contract("Bottles").busSignals);
        QCOMPARE(signalsOf(InstallerManager::staticMetaObject, {}), Contract("InstallerManager").busSignals);
        QCOMPARE(signalsOf(OfflineDependency::staticMetaObject, {"progressNotified"}),
                 Contract("OfflineDependency").busSignals);
        QCOMPARE(Contract("InstallerManager").methods,
                 (QMap<QString, QString>{{"cancelSetup", "s"}, {"setupYaml", "ss"}}));
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
};

QTEST_GUILESS_MAIN(WireContractTest)
#include "WireContractTest.moc"
