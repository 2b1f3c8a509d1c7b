#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QtTest>

#include "backend/BusResult.h"

using BusReply::Wanted;

class BusResultTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void fromMessage_data() {
        QTest::addColumn<QDBusMessage>("message");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("okWhenIgnored");
        const QDBusMessage call = QDBusMessage::createMethodCall("a.b", "/", "a.b", "c");
        QTest::newRow("text") << call.createReply(QString("[1]")) << true << "[1]" << true;
        QTest::newRow("empty text") << call.createReply(QString("")) << true << "" << true;
        QTest::newRow("number") << call.createReply(7) << true << "7" << true;
        QTest::newRow("variant") << call.createReply(QVariant::fromValue(QDBusVariant("v"))) << true << "v"
                                 << true;
        QTest::newRow("two arguments")
            << call.createReply(QVariantList{"first", "second"}) << true << "first" << true;
        QTest::newRow("no argument") << call.createReply() << false << "" << true;
        QTest::newRow("a map") << call.createReply(QVariantMap{{"a", 1}}) << false << "" << true;
        QTest::newRow("error") << call.createErrorReply(QDBusError::NoReply, "gone") << false << "" << false;
        QTest::newRow("not a reply") << call << false << "" << false;
        QTest::newRow("nothing") << QDBusMessage() << false << "" << false;
    }
    void fromMessage() {
        QFETCH(QDBusMessage, message);
        QFETCH(bool, ok);
        const BusResult result = BusReply::fromMessage(message);
        QCOMPARE(result.ok, ok);
        QTEST(result.text, "text");
        QCOMPARE(result.errorMessage.isEmpty(), ok);
        QTEST(BusReply::fromMessage(message, Wanted::Ignored).ok, "okWhenIgnored");
    }

    void errorWithoutMessageIsNamed() {
        const QDBusMessage call = QDBusMessage::createMethodCall("a.b", "/", "a.b", "c");
        QCOMPARE(BusReply::fromMessage(call.createErrorReply("a.b.Broken", "")).errorMessage,
                 QString("a.b.Broken"));
    }

    void json_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("strings");
        QTest::addColumn<QStringList>("keys");
        QTest::newRow("array") << "[\"a\",\"b\"]" << QStringList{"a", "b"} << QStringList();
        QTest::newRow("elements that aren't strings")
            << "[\"a\",1,null]" << QStringList{"a", "", ""} << QStringList();
        QTest::newRow("object") << "{\"k\":1}" << QStringList() << QStringList{"k"};
        QTest::newRow("torn") << "{\"k\":" << QStringList() << QStringList();
        QTest::newRow("empty") << "" << QStringList() << QStringList();
    }
    void json() {
        BusResult result;
        QFETCH(QString, text);
        result.text = text;
        QTEST(result.strings(), "strings");
        QTEST(result.object().keys(), "keys");
    }
};

QTEST_GUILESS_MAIN(BusResultTest)
#include "BusResultTest.moc"
