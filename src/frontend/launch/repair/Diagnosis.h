#pragma once

#include <QString>

#include "launch/repair/RepairAction.h"

struct FailureFacts;

/// Why a program failed, for the user, and the repair to offer.
struct Diagnosis {
    QString reason;  ///< one or two short sentences of translated plain text; never empty
    RepairAction action = RepairAction::None;

    static Diagnosis of(const FailureFacts& facts);
};
