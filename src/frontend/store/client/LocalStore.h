#pragma once

#include <QString>
#include <functional>

class QObject;

/// The store that runs on this machine as long as it is asked, for the user alone. It answers where no other
/// store is configured. The session bus starts it, or else this process does; it ends by itself when idle.
/// GUI thread.
namespace LocalStore {

constexpr int StartMs = 10000;  ///< it may take so long until it answers

/// Stands for the store's address, which is known only when it runs.
QString placeholder();
bool isMeant(const QString& url);

/// Calls `then` later with `url`, in which the placeholder has become the address of the running store, or
/// with an empty text when it can't be started, which is logged. Not when `context` is destroyed first.
void resolve(const QString& url, QObject* context, const std::function<void(const QString& url)>& then);

}  // namespace LocalStore
