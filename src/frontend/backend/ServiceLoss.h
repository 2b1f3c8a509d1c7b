#pragma once

#include <functional>

class QObject;

/// Calls the handler, in context's thread until context is destroyed, each time the background service has
/// left the bus, also when another took its place at once. For callers that wait for a signal of it: the new
/// service never reports what the old one was doing.
void whenServiceIsLost(QObject* context, const std::function<void()>& handler);
