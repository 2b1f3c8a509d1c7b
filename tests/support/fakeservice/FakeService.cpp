#include "support/fakeservice/FakeService.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QDBusArgument>
#include <QJsonDocument>
#include <QTimer>

namespace {

const char BottlesInterface[] = "com.lumora.Manager.Bottles";

QJsonArray toJson(const QVariantList& arguments) {
    QJsonArray result;
    for (const QVariant& argument : arguments)
        result.append(argument.canConvert<QDBusArgument>()
                          ? QJsonObject::fromVariantMap(qdbus_cast<QVariantMap>(argument))
                          : QJsonValue::fromVariant(argument));
    return result;
}

QVariant typed(QChar type, const QJsonValue& value) {
    return type == 's'   ? QVariant(value.toString())
           : type == 'b' ? QVariant(value.toBool())
           : type == 'i' ? QVariant(value.toInt())
           : type == 'u' ? QVariant(uint(value.toDouble()))
                         : QVariant(qlonglong(value.toDouble()));
}

}  // namespace

FakeService::FakeService(const QDBusConnection& connection) : m_connection(connection) {
    for (const char* path : {"/com/lumora/Manager", "/org/freedesktop", "/com/home", "/com/steampowered"})
        m_connection.registerVirtualObject(path, this, QDBusConnection::SubPath);
}

bool FakeService::handleMessage(const QDBusMessage& message, const QDBusConnection&) {
    if (message.interface() == "org.freedesktop.DBus.Introspectable")
        return false;
    record(message);
    const QString signature = Scenario::bottleSignature(message.member());
    if (message.interface() == BottlesInterface && (signature.isNull() || signature != message.signature())) {
        const QString text = QString("no method %1(%2)").arg(message.member(), message.signature());
        return m_connection.send(message.createErrorReply(QDBusError::UnknownMethod, text));
    }
    const QString first = message.arguments().value(0).toString();
    answer(message, m_scenario.answerFor(message.interface(), message.member(), first));
    if (message.member() == "Quit")
        QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
    return true;
}

void FakeService::record(const QDBusMessage& message) {
    m_calls.append(QJsonObject{{"path", message.path()},
                               {"interface", message.interface()},
                               {"method", message.member()},
                               {"signature", message.signature()},
                               {"arguments", toJson(message.arguments())}});
}

void FakeService::answer(const QDBusMessage& message, const QJsonObject& answer) {
    message.setDelayedReply(true);
    if (answer.value("hold").toBool()) {
        m_held.append({message, answer});
        return;
    }
    const int delay = answer.value("delay").toInt();
    if (delay > 0)
        QTimer::singleShot(delay, this, [this, message, answer] { send(message, answer); });
    else
        send(message, answer);
}

void FakeService::send(const QDBusMessage& message, const QJsonObject& answer) {
    if (answer.value("vanish").toBool())
        ::_exit(1);
    if (answer.contains("error")) {
        const QString name = answer.value("errorName").toString("com.lumora.Error.Failed");
        QDBusMessage refusal = message.createErrorReply(name, answer.value("error").toString());
        if (answer.contains("reasons"))
            refusal << QString::fromUtf8(QJsonDocument(answer.value("reasons").toArray()).toJson());
        m_connection.send(refusal);
    } else if (answer.contains("number")) {
        m_connection.send(message.createReply(answer.value("number").toInt()));
    } else if (answer.contains("list")) {
        m_connection.send(message.createReply(answer.value("list").toVariant().toStringList()));
    } else if (answer.value("empty").toBool()) {
        m_connection.send(message.createReply());
    } else {
        m_connection.send(message.createReply(answer.value("text").toString()));
    }
}

int FakeService::release(const QString& method) {
    int released = 0;
    for (int i = 0; i < m_held.size();) {
        if (!method.isEmpty() && m_held.at(i).message.member() != method) {
            ++i;
            continue;
        }
        const Held held = m_held.takeAt(i);
        send(held.message, held.answer);
        ++released;
    }
    return released;
}

bool FakeService::emitSignal(const QString& path, const QString& interface, const QString& name,
                             const QString& signature, const QJsonArray& arguments) {
    QDBusMessage signal = QDBusMessage::createSignal(path, interface, name);
    for (int i = 0; i < signature.size(); ++i)
        signal << typed(signature.at(i), arguments.at(i));
    return m_connection.send(signal);
}

bool FakeServiceControl::SetAnswers(const QString& key, const QString& answers) {
    QList<QJsonObject> list;
    for (const QJsonValue& value : QJsonDocument::fromJson(answers.toUtf8()).array())
        list.append(value.toObject());
    m_service->scenario().set(key, list);
    return !list.isEmpty();
}

QString FakeServiceControl::Calls() const {
    return QString::fromUtf8(QJsonDocument(m_service->calls()).toJson(QJsonDocument::Compact));
}

bool FakeServiceControl::EmitSignal(const QString& path, const QString& interface, const QString& name,
                                    const QString& signature, const QString& arguments) {
    return m_service->emitSignal(path, interface, name, signature,
                                 QJsonDocument::fromJson(arguments.toUtf8()).array());
}
