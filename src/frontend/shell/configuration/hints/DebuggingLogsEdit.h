#pragma once

#include "shell/configuration/rules/DebugLog.h"
#include "widgets/LogsWidget.h"

/// The text of a debugging run, read-only and wrapped: the newest lines, as LogsWidget shows them.
class DebuggingLogsEdit : public LogsWidget {
    Q_OBJECT
public:
    explicit DebuggingLogsEdit(QWidget* parent = nullptr) : LogsWidget(parent, DebugLog::MaxLines) {
        setObjectName("debugging_log");
        setAccessibleName(tr("Debug Log"));
    }
};
