#pragma once

#include <QStringList>
#include <QVector>

#include "launch/MsgType.h"

class WineLogParser;

struct LaunchMessage {
    QString text;
    MsgType type;
};

/// The repairs that the log of an ended program asks for, and the messages for the user, in order. Repairs
/// that were tried in this run are left out, so every chain of repairs ends.
struct LogFindings {
    /// The other inputs. Crashes and fonts are reported only for a first run, not for a stored program.
    struct Asked {
        bool isFirstRun = true;
        bool autoFix = false;
        QString dotnetVersion;      ///< that the file was built for; empty when unknown
        QString requiredComponent;  ///< the component that contains that .NET version
        QStringList triedComponents;
        QStringList triedFonts;
    };

    QStringList components;  ///< sorted, except that the .NET runtime of the file comes first
    QStringList fonts;       ///< sorted
    bool crashed = false;
    bool installFailed = false;
    QVector<LaunchMessage> messages;

    /// `mask` is the result of the parser.
    static LogFindings of(const WineLogParser& log, int mask, const Asked& asked);
};
