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
    QString errorMessage;      ///< set when !ok
    bool serviceGone = false;  ///< the service was there and left without an answer
    bool abandoned =
        false;  ///< the owner, or the program's event loop, ended first; owner must not be touched

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
