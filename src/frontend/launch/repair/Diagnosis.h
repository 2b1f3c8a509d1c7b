#pragma once

#include <QString>

#include "launch/repair/RepairAction.h"

struct FailureFacts;

/// Why a program has failed, in words for the user, and what "Repair" does about it.
struct Diagnosis {
    QString reason;  ///< one or two short sentences, translated plain text; never empty for a failure
    RepairAction action = RepairAction::None;

    static Diagnosis of(const FailureFacts& facts);
};
