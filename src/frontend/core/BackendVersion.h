#pragma once

/// Asks the bottle service for its version and tells one of another version to quit, so that the bus starts
/// the matching one on the next call. Waits for the answer for up to 10 s; runs on a pool thread and touches
/// only the log. At most once a process.
void checkBackendVersion();

/// Ends a running check, and each later one, without a result. For the end of the process, which waits for
/// the pool and must not wait for a service that hangs. Called from another thread than the check.
void abandonBackendVersion();
