#pragma once

#include <functional>

class QObject;

/// Makes the Proton runners ready before the first one is chosen.
namespace ProtonSetup {

/// Calls `then` in any case, at once or when the set-up has ended, unless `context` is destroyed first. Where
/// the application has set nothing up for it, that is at once.
void prepare(QObject* context, const std::function<void()>& then);

}  // namespace ProtonSetup
