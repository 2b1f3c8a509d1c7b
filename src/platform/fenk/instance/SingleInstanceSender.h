#pragma once

#include <QByteArray>
#include <QString>

namespace Fenk {

/// The sending side of SingleInstance.
namespace SingleInstanceSender {

enum class Outcome { Confirmed, NobodyListens, Refused, TimedOut };

/// Blocks until the running process has confirmed, at most until `deadlineMs` of the monotonic clock.
Outcome send(const QString& path, const QByteArray& message, qint64 deadlineMs);

qint64 monotonicMs();

}  // namespace SingleInstanceSender
}  // namespace Fenk
