#pragma once

class QThreadPool;

/// The threads of work that waits for the background service. It may answer late or never, and nothing else
/// must stand in line behind it: neither the work of the global pool nor the end of the process.
namespace ServiceThreads {

QThreadPool* pool();

/// Before the process is torn down, which can't be done around a call that still waits: lets what is under
/// way come to its end. When the service stays silent for seconds, ends the process here, with the given
/// code.
void settle(int exitCode);

}  // namespace ServiceThreads
