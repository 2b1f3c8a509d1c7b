#pragma once

#include "launch/repair/FailureFacts.h"

/// The texts for a failure sign: full sentences, translated, plain text.
struct FailureReason {
    QString reason;
    QString advice;  ///< what the user can do if Repair does not help; may be empty
    bool mayRunOnOtherWine = false;

    static FailureReason of(const FailureSign& sign);
};
