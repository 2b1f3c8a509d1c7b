#pragma once

#include <sys/types.h>

/// Lowers the priority of child processes in a way that can be undone. A user without privileges can make a
/// process nicer but not less nice again. So the disk priority and the scheduler's batch policy are always
/// used, the nice value only where the limits of this process allow to raise it again.
namespace ProcessPriority {

/// Whether the nice value of child processes can be raised again. Not to be called between fork and exec.
bool canRaise();

/// Lowers the priority of the calling thread and what it starts. Makes only system calls, so that it may be
/// called between fork and exec.
void lowerSelf(bool withNice);

/// Undoes lowerSelf() for all threads of a process. Threads that end meanwhile are no error.
void raise(pid_t pid);

}  // namespace ProcessPriority
