#pragma once

#include <QStringList>
#include <QVector>

#include "launch/MsgType.h"

class WineLogParser;

struct LaunchMessage {
    QString text;
    MsgType type;
};

/// What the log of an ended program asks for, and the lines that tell the user so, in order. What was tried
/// in this run is left out, so that no repair is made twice and every chain of repairs ends.
struct LogFindings {
    /// What else decides. A stored program (not the first run) is not asked about crashes and fonts.
    struct Asked {
        bool isFirstRun = true;
        bool autoFix = false;
        QString dotnetVersion;      ///< that the file was made for; empty when it is not known
        QString requiredComponent;  ///< that brings it
        QStringList triedComponents;
        QStringList triedFonts;
    };

    QStringList components;  ///< sorted, but for the runtime of the file, which comes first
    QStringList fonts;       ///< sorted
    bool crashed = false;
    bool installFailed = false;
    QVector<LaunchMessage> messages;

    /// mask is what the parser returned.
    static LogFindings of(const WineLogParser& log, int mask, const Asked& asked);
};
