#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

class QDBusMessage;

/// The result of one call of the background service: the text of the reply, or why there is none. Malformed
/// JSON reads as the empty object or array.
struct BusResult {
    bool ok = false;
    QString text;
    QString errorMessage;      ///< set when !ok; for logs, in English where the service has made it
    QJsonArray reasons;        ///< the same as codes, for ServiceErrorText
    QString errorName;         ///< D-Bus name of the error; empty for an error of this process
    bool serviceGone = false;  ///< the service was running and ended without an answer
    bool timedOut = false;     ///< no answer yet; the service goes on, and its signal may still come
    bool abandoned =
        false;  ///< the owner, or the program's event loop, ended first; owner must not be touched

    /// Refused because programs run in the bottle; a signal names them.
    bool isBusy() const { return errorName == QLatin1String("com.lumora.Error.Busy"); }

    /// For the user, in the language of the session.
    QString errorText() const;

    QJsonObject object() const;
    QJsonArray array() const;
    QStringList strings() const;  ///< the array's elements, each as a string
    static QStringList stringsOf(const QJsonArray& array);
};

namespace BusReply {

/// Text: a reply without a first argument that is, or converts to, a string is an error. Ignored: any reply
/// is good.
enum class Wanted { Text, Ignored };

BusResult fromMessage(const QDBusMessage& message, Wanted wanted = Wanted::Text);

}  // namespace BusReply
