#include "bottleservice/wire/BusObject.h"

#include <QDBusError>
#include <QDebug>
#include <QPointer>

#include "bottleservice/bottles/JsonText.h"

namespace {

constexpr int MaximumArgumentCharacters = 4 * 1024 * 1024;
constexpr int ListItemCharacters = 1024;  // each item counts as at least so many

int sizeOf(const QVariant& argument) {
    int size = argument.toString().size();
    for (const QString& item :
         argument.type() == QVariant::StringList ? argument.toStringList() : QStringList())
        size += item.size() + ListItemCharacters;
    return size;
}

QString errorName(Answer::Fault fault) {
    switch (fault) {
        case Answer::Fault::InvalidArgs:
            return "com.lumora.Error.InvalidArgs";
        case Answer::Fault::NoSuchBottle:
            return "com.lumora.Error.NoSuchBottle";
        case Answer::Fault::NoSuchProgram:
            return "com.lumora.Error.NoSuchProgram";
        case Answer::Fault::Busy:
            return "com.lumora.Error.Busy";
        case Answer::Fault::NotSupported:
            return "com.lumora.Error.NotSupported";
        default:
            return "com.lumora.Error.Failed";
    }
}

/// The first argument is the English text, as every client expects; the second has the codes.
QDBusMessage errorReply(const QDBusMessage& message, const Answer& result) {
    QDBusMessage reply = message.createErrorReply(errorName(result.fault), result.reason.text());
    reply << JsonText::compact(result.reason.toJson());
    return reply;
}

QDBusMessage goodReply(const QDBusMessage& message, const QString& signature, const Answer& result) {
    if (signature.isEmpty())
        return message.createReply();
    return message.createReply(signature == "b" ? QVariant(result.text == Answer::True)
                                                : QVariant(result.text));
}

}  // namespace

BusObject::BusObject(const QString& path, const QString& contractResource, QObject* parent)
    : QDBusVirtualObject(parent),
      m_path(path),
      m_contract(BusContract::load(contractResource)),
      m_connection(QString()) {}

bool BusObject::registerOn(const QDBusConnection& connection) {
    m_connection = connection;
    return m_connection.registerVirtualObject(m_path, this, QDBusConnection::SingleNode);
}

QString BusObject::introspect(const QString& path) const {
    return path == m_path ? m_contract.introspection() : QString();
}

void BusObject::handle(const QString& method, Handler handler) {
    Q_ASSERT(m_contract.hasMethod(method));
    m_handlers.insert(method, std::move(handler));
}

bool BusObject::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    // Introspection, peer and property calls are answered by the bus library.
    if (!message.interface().isEmpty() && message.interface() != m_contract.interface())
        return false;
    if (!m_contract.hasMethod(message.member())) {
        if (message.interface().isEmpty())
            return false;
        connection.send(message.createErrorReply(
            QDBusError::UnknownMethod,
            QString("%1 has no method \"%2\".").arg(m_contract.interface(), message.member())));
        return true;
    }
    const Answer verdict = check(message);
    if (!verdict.isGood()) {
        answer(connection, message, verdict);
        Q_EMIT refused(message.member(), message.arguments(), verdict);
        return true;
    }
    Q_EMIT called();
    qDebug() << "call" << message.member() << "from" << message.service();
    m_handlers.value(message.member())(
        message.arguments(),
        // A job may outlive this object when the service ends.
        [self = QPointer<const BusObject>(this), connection, message](const Answer& result) {
            if (self)
                self->answer(connection, message, result);
        });
    return true;
}

Answer BusObject::check(const QDBusMessage& message) const {
    const QString expected = m_contract.method(message.member()).inSignature;
    if (message.signature() != expected)
        return Answer::failure(Answer::Fault::InvalidArgs,
                               QString("%1 takes arguments of type \"%2\", not \"%3\".")
                                   .arg(message.member(), expected, message.signature()));
    for (const QVariant& argument : message.arguments()) {
        if (sizeOf(argument) > MaximumArgumentCharacters)
            return Answer::failure(Answer::Fault::InvalidArgs,
                                   QString("An argument of %1 is too long.").arg(message.member()));
    }
    if (!m_handlers.contains(message.member()))
        return Answer::failure(
            Answer::Fault::NotSupported,
            QString("This version of the bottle service cannot do \"%1\" yet.").arg(message.member()));
    return Answer::of();
}

void BusObject::answer(const QDBusConnection& connection, const QDBusMessage& message,
                       const Answer& result) const {
    if (!result.isGood())
        qWarning().noquote() << message.member() << "failed:" << result.reason.text();
    if (!message.isReplyRequired())
        return;
    if (!result.isGood())
        connection.send(errorReply(message, result));
    else
        connection.send(goodReply(message, m_contract.method(message.member()).outSignature, result));
}

void BusObject::emitSignal(const QString& name, const QVariantList& arguments) {
    Q_ASSERT(m_contract.hasSignal(name) && m_contract.signalSignature(name).size() == arguments.size());
    QDBusMessage signal = QDBusMessage::createSignal(m_path, m_contract.interface(), name);
    signal.setArguments(arguments);
    if (!m_connection.send(signal))
        qWarning() << "cannot send signal" << name;
}
