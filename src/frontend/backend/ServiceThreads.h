#pragma once

class QThreadPool;

/// The threads of work that waits for the background service. It may answer late or never, and nothing else
/// must stand in line behind it: neither the work of the global pool nor the end of the process.
namespace ServiceThreads {

QThreadPool* pool();
/// One thread, for what depends on the order.
QThreadPool* inOrder();

/// At the end of the process: lets what is under way come to its own, for some seconds in all.
void settle();
/// When false, the process must not be torn down to the end: the bus can't go around a call that still waits.
bool isQuiet();

}  // namespace ServiceThreads
