#pragma once

#include "bottleservice/result/Answer.h"

class BottleAccess;

/// Checks that requests make before they enter a queue.
namespace RequestChecks {

/// Replies and returns true when no bottle can have this name.
bool refuseName(const QString& bottle, const Reply& reply);
/// Replies and returns true when the bottle does not exist or cannot be used.
bool refuseUnknown(const BottleAccess& bottles, const QString& bottle, const Reply& reply);

/// The answer for a program that the bottle does not have.
Answer noProgram(const QString& bottle, const QString& programId);

}  // namespace RequestChecks
