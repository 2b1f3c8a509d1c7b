#pragma once

#include <QRegularExpression>
#include <QString>
#include <QVector>

#include "launch/repair/FailureFacts.h"

/// A trace that a failure leaves in a log.
struct FailurePattern {
    enum Source {
        Logged,  ///< a line of Wine, its server or the launch script
        Said,    ///< what the program itself draws, as in a message box, or prints; matched in lower case
    };

    Failure failure;
    Source source;
    QString text;               ///< that the line holds
    QRegularExpression detail;  ///< that it must match as well, if valid and not empty; captures the detail
    QString component;          ///< that brings what is missing
};

/// All that are known. Compiled once in the process.
const QVector<FailurePattern>& failurePatterns();
