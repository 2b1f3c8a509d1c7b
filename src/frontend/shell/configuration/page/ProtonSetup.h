#pragma once

#include <functional>

class QObject;

/// Makes the Proton runners ready before the first one is chosen. The application sets it; without it nothing
/// is made ready.
namespace ProtonSetup {

/// Calls `then` in any case, at once or when the set-up has ended, unless `context` is destroyed first.
using Prepare = std::function<void(QObject* context, const std::function<void()>& then)>;

void set(const Prepare& prepare);
void prepare(QObject* context, const std::function<void()>& then);

}  // namespace ProtonSetup
