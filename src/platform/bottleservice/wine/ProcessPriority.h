#pragma once

#include <sys/types.h>

/// How much processor and disk a process gets while others want them, too. A user without privileges can make
/// a process nicer but never take that back, so only what can be taken back is done: the disk and the
/// scheduler's batch policy always, the nice value only where the limits of this process allow it.
namespace ProcessPriority {

/// Whether a nice value of this process's children can be taken back. Not to be called between fork and exec.
bool canRaise();

/// Puts the calling thread, and what it starts, behind everything else. Only system calls.
void lowerSelf(bool withNice);

/// Gives all threads of a process back what lowerSelf() has taken. Threads that end meanwhile are no error.
void raise(pid_t pid);

}  // namespace ProcessPriority
