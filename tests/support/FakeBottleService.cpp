#include "support/FakeBottleService.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QJsonDocument>

namespace TestSupport {

namespace {

QString compact(const QJsonDocument& document) {
    return QString::fromUtf8(document.toJson(QJsonDocument::Compact));
}

}  // namespace

bool FakeBottleService::start(bool nameless) {
    m_process = std::make_unique<ChildProcess>();
    m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process->start(FAKE_BOTTLE_SERVICE, nameless ? QStringList{"--nameless"} : QStringList());
    return m_process->readLineWithin() == "ready";
}

void FakeBottleService::kill() {
    m_process->kill();
    m_process->waitForFinished();
}

bool FakeBottleService::takeName(const QString& name) {
    return control("TakeName", {name}).toBool();
}

void FakeBottleService::setJson(const QString& key, const QJsonObject& object) {
    setText(key, compact(QJsonDocument(object)));
}

void FakeBottleService::setJson(const QString& key, const QJsonArray& array) {
    setText(key, compact(QJsonDocument(array)));
}

void FakeBottleService::setAnswers(const QString& key, const QVector<QJsonObject>& answers) {
    QJsonArray list;
    for (const QJsonObject& answer : answers)
        list.append(answer);
    control("SetAnswers", {key, compact(QJsonDocument(list))});
}

int FakeBottleService::release(const QString& method) {
    return control("Release", {method}).toInt();
}

QVector<RecordedCall> FakeBottleService::calls() {
    QVector<RecordedCall> result;
    const QByteArray text = control("Calls").toString().toUtf8();
    for (const QJsonValue& value : QJsonDocument::fromJson(text).array()) {
        const QJsonObject call = value.toObject();
        result.append({call.value("path").toString(), call.value("interface").toString(),
                       call.value("method").toString(), call.value("signature").toString(),
                       call.value("arguments").toArray()});
    }
    return result;
}

QVector<RecordedCall> FakeBottleService::calls(const QString& method) {
    QVector<RecordedCall> result;
    for (const RecordedCall& call : calls()) {
        if (call.method == method)
            result.append(call);
    }
    return result;
}

RecordedCall FakeBottleService::waitForCall(const QString& method, int times, int timeoutMs) {
    RecordedCall last;
    waitUntil(
        [&] {
            const QVector<RecordedCall> found = calls(method);
            if (found.size() < times)
                return false;
            last = found.last();
            return true;
        },
        timeoutMs);
    return last;
}

bool FakeBottleService::emitSignal(const QString& name, const QString& signature,
                                   const QJsonArray& arguments) {
    return emitSignal("/com/lumora/Manager/Bottles", "com.lumora.Manager.Bottles", name, signature,
                      arguments);
}

bool FakeBottleService::emitSignal(const QString& path, const QString& interface, const QString& name,
                                   const QString& signature, const QJsonArray& arguments) {
    return control("EmitSignal", {path, interface, name, signature, compact(QJsonDocument(arguments))})
        .toBool();
}

QVariant FakeBottleService::control(const QString& method, const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        "com.lumora.Test.FakeService", "/com/lumora/Test/Control", "com.lumora.Test.Control", method);
    call.setArguments(arguments);
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
    if (reply.type() == QDBusMessage::ErrorMessage)
        qCritical("fake service, %s: %s", qPrintable(method), qPrintable(reply.errorMessage()));
    return reply.arguments().value(0);
}

}  // namespace TestSupport
