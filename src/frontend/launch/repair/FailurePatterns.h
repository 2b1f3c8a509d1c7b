#pragma once

#include <QRegularExpression>
#include <QString>
#include <QVector>

#include "launch/repair/FailureFacts.h"

/// A pattern that a failure leaves in a log.
struct FailurePattern {
    enum Source {
        Logged,  ///< a line of Wine, wineserver or the launch script
        Said,    ///< text that the program draws, as in a message box, or prints; matched in lower case
    };

    Failure failure;
    Source source;
    QString text;               ///< substring of the line
    QRegularExpression detail;  ///< further condition, if not empty; captures the detail
    QString component;          ///< the component that contains what is missing
};

/// All known patterns, compiled once per process.
const QVector<FailurePattern>& failurePatterns();
