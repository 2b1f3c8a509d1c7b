#include "backend/BusResult.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>

#include "support/Table.h"

using BusReply::Wanted;

class BusResultTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void fromMessage_data() {
        const TestSupport::Table<QDBusMessage, bool, QString, bool> row("message", "ok", "text",
                                                                        "okWhenIgnored");
        const QDBusMessage call = QDBusMessage::createMethodCall("a.b", "/", "a.b", "c");
        row("text", call.createReply(QString("[1]")), true, "[1]", true);
        row("number", call.createReply(7), true, "7", true);
        row("variant", call.createReply(QVariant::fromValue(QDBusVariant("v"))), true, "v", true);
        row("two arguments", call.createReply(QVariantList{"first", "second"}), true, "first", true);
        row("no argument", call.createReply(), false, "", true);
        row("a map", call.createReply(QVariantMap{{"a", 1}}), false, "", true);
        row("error", call.createErrorReply(QDBusError::NoReply, "gone"), false, "", false);
        row("nothing", QDBusMessage(), false, "", false);
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
};

QTEST_GUILESS_MAIN(BusResultTest)
#include "BusResultTest.moc"
