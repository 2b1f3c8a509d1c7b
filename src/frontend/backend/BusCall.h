#pragma once

#include <QVariantList>
#include <functional>

#include "backend/BusResult.h"

class QDBusAbstractInterface;
class QObject;

/// The four ways in which a proxy calls its service. All use the proxy's time-out. A proxy method is one
/// line: the name, the arguments in order, the mode. Without a session bus each fails at once.
namespace BusCall {

using Handler = std::function<void(const BusResult&)>;

/// Waits in the caller's thread without an event loop. May be called from any thread.
BusResult block(const QDBusAbstractInterface& proxy, const QString& method,
                const QVariantList& arguments = {}, BusReply::Wanted wanted = BusReply::Wanted::Text);

/// Sends and forgets. Neither reply nor error is looked at.
void fire(const QDBusAbstractInterface& proxy, const QString& method, const QVariantList& arguments);

/// Returns at once; the handler runs in context's thread when the reply or the error is there, exactly once,
/// or never when context is destroyed first. The proxy may go meanwhile.
void watch(const QDBusAbstractInterface& proxy, const QString& method, const QVariantList& arguments,
           QObject* context, const Handler& handler, BusReply::Wanted wanted = BusReply::Wanted::Text);

/// Waits with a live event loop: other slots run on top of the caller meanwhile. When owner (which may be
/// null) is destroyed in one of them, or the program quits, the wait ends and the result is abandoned.
BusResult loop(const QDBusAbstractInterface& proxy, const QString& method, const QVariantList& arguments,
               QObject* owner);

}  // namespace BusCall
