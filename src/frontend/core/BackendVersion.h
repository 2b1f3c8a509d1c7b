#pragma once

/// Asks the bottle service for its version and tells one of another version to quit, so that the bus starts
/// the matching one on the next call. Blocks on the bus; runs on a pool thread and touches only the log.
void checkBackendVersion();
