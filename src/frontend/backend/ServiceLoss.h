#pragma once

#include <functional>

class QObject;

/// Calls the handler, in context's thread and as long as context lives, each time the background service that
/// was on the bus has left it, also when another has taken its place at once. For whoever waits for one of
/// its signals: what the old one had under way will never be told.
void whenServiceIsLost(QObject* context, const std::function<void()>& handler);
