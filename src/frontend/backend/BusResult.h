#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

class QDBusMessage;

/// What came of one bus call, for every proxy of the background service: the text of the reply, or the reason
/// why there is none. Malformed JSON reads as the empty object or array.
struct BusResult {
    bool ok = false;
    QString text;
    QString errorMessage;      ///< set when !ok; for logs, in English where the service has made it
    QJsonArray reasons;        ///< the same for ServiceErrorText
    QString errorName;         ///< of the reply; empty for what went wrong on this side
    bool serviceGone = false;  ///< the service was there and left without an answer
    bool timedOut = false;     ///< no answer yet; the service goes on, and its signal may still come
    bool abandoned =
        false;  ///< the owner, or the program's event loop, ended first; owner must not be touched

    /// Refused because programs run in the bottle; a signal tells which.
    bool isBusy() const { return errorName == QLatin1String("com.lumora.Error.Busy"); }

    /// For the user, in the language of the session.
    QString errorText() const;

    QJsonObject object() const;
    QJsonArray array() const;
    QStringList strings() const;  ///< the array's elements, each as a string
};

namespace BusReply {

/// Text: the reply must bring a first argument that is a string or can be made one. Ignored: any reply will
/// do.
enum class Wanted { Text, Ignored };

BusResult fromMessage(const QDBusMessage& message, Wanted wanted = Wanted::Text);

}  // namespace BusReply
