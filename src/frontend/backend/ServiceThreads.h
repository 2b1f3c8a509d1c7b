#pragma once

class QThreadPool;

/// The threads of work that waits for the background service. The service may answer late or never; so
/// neither other work, which has the global pool, nor the end of the process waits for these threads.
namespace ServiceThreads {

QThreadPool* pool();
/// One thread, for work that depends on the order.
QThreadPool* inOrder();

/// At the end of the process: waits until the running work is done, for at most 3 s in all calls together.
/// Logs a warning when work remains.
void waitForDone();
/// Whether no work is running. Otherwise leave the process with _exit(): the bus connection can't be
/// destroyed while a call waits on it.
bool isIdle();

}  // namespace ServiceThreads
