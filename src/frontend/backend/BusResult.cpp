#include "backend/BusResult.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QJsonDocument>

#include "backend/ServiceErrorText.h"

namespace {

BusResult failure(const QString& message) {
    BusResult result;
    result.errorMessage = message;
    return result;
}

BusResult unexpected(const QDBusMessage& message) {
    return failure(
        QString("Unexpected reply signature: got \"%1\", expected \"s\"").arg(message.signature()));
}

BusResult fromArgument(const QVariant& argument, const QDBusMessage& message) {
    BusResult result;
    if (argument.userType() == qMetaTypeId<QDBusArgument>()) {
        const auto packed = argument.value<QDBusArgument>();
        if (packed.currentType() != QDBusArgument::BasicType &&
            packed.currentType() != QDBusArgument::VariantType)
            return unexpected(message);
        const QVariant unpacked = packed.asVariant();
        if (!unpacked.canConvert<QString>())
            return unexpected(message);
        result.text = unpacked.toString();
    } else if (argument.userType() == qMetaTypeId<QDBusVariant>()) {
        return fromArgument(argument.value<QDBusVariant>().variant(), message);
    } else if (argument.canConvert<QString>()) {
        result.text = argument.toString();
    } else {
        return unexpected(message);
    }
    result.ok = true;
    return result;
}

}  // namespace

QString BusResult::errorText() const {
    const char* english = nullptr;
    if (serviceGone)
        english = QT_TRANSLATE_NOOP("ServiceErrorText", "The bottle service has ended unexpectedly.");
    else if (timedOut)
        english = QT_TRANSLATE_NOOP("ServiceErrorText", "The bottle service does not answer.");
    else if (errorName.startsWith("org.freedesktop.DBus.Error.Spawn") ||
             errorName == "org.freedesktop.DBus.Error.ServiceUnknown")
        english = QT_TRANSLATE_NOOP("ServiceErrorText", "The bottle service cannot be started.");
    return english ? QCoreApplication::translate("ServiceErrorText", english)
                   : ServiceErrorText::of(reasons, errorMessage);
}

QJsonObject BusResult::object() const {
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

QJsonArray BusResult::array() const {
    return QJsonDocument::fromJson(text.toUtf8()).array();
}

QStringList BusResult::strings() const {
    return stringsOf(array());
}

QStringList BusResult::stringsOf(const QJsonArray& array) {
    QStringList result;
    for (const QJsonValue& value : array)
        result.append(value.toString());
    return result;
}

BusResult BusReply::fromMessage(const QDBusMessage& message, Wanted wanted) {
    if (message.type() == QDBusMessage::ErrorMessage) {
        const QDBusError error(message);
        BusResult result = failure(error.message().isEmpty() ? error.name() : error.message());
        result.errorName = error.name();
        result.reasons = QJsonDocument::fromJson(message.arguments().value(1).toString().toUtf8()).array();
        // The bus answers in the place of a service that has gone; nobody sends the error of a time-out.
        result.timedOut = error.type() == QDBusError::NoReply && message.service().isEmpty();
        result.serviceGone = !result.timedOut && (error.type() == QDBusError::NoReply ||
                                                  error.type() == QDBusError::Disconnected);
        return result;
    }
    if (message.type() != QDBusMessage::ReplyMessage)
        return failure("no reply");
    const QVariantList arguments = message.arguments();
    if (!arguments.isEmpty()) {
        const BusResult result = fromArgument(arguments.first(), message);
        if (result.ok)
            return result;
    }
    if (wanted == Wanted::Text)
        return unexpected(message);
    BusResult done;
    done.ok = true;
    return done;
}
