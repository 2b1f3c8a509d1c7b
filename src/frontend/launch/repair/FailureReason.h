#pragma once

#include "launch/repair/FailureFacts.h"

/// What a sign means, for the user. Both are full sentences, translated, in plain text.
struct FailureReason {
    QString reason;
    QString advice;  ///< what can be done where Repair does not help; may be empty
    bool mayRunOnOtherWine = false;

    static FailureReason of(const FailureSign& sign);
};
