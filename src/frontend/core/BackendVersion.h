#pragma once

/// Asks the bottle service for its version and tells one of another version to quit, so that the bus starts
/// the matching one on the next call. Waits for the answer for up to 10 s; runs on a pool thread and touches
/// only the log. At most once a process.
void checkBackendVersion();

/// Ends the wait, from another thread: the end of the process waits for the pool, and must not wait for a
/// service that hangs.
void abandonBackendVersion();
