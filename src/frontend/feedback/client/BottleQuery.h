#pragma once

#include <functional>

#include "backend/BusResult.h"

class QObject;

/// Asks the background service for a bottle's record on behalf of a report or a rating. Such a call may wait
/// behind a long Wine operation, and a report about just that must not.
namespace BottleQuery {

constexpr int LimitMs = 10000;

/// The handler is called once, later, in the GUI thread, unless context is destroyed first; after `limitMs`
/// with a result that is not ok, and a line in the log.
void ask(const QString& bottleName, QObject* context, const std::function<void(const BusResult&)>& handler,
         int limitMs = LimitMs);

}  // namespace BottleQuery
