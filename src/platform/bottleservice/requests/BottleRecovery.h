#pragma once

class BottleEngine;

/// What a new service does about the work that an earlier one has left unfinished.
namespace BottleRecovery {

/// Removes half made and half deleted directories and files, restores bottles in which an installation was
/// interrupted, updates bottles whose Wine has changed, and removes templates that nobody needs. Call once,
/// before the first request. Jobs go on afterwards in the bottles' queues.
void run(BottleEngine* engine);

}  // namespace BottleRecovery
