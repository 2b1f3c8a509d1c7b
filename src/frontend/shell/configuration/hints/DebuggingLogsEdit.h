#pragma once

#include "widgets/LogsWidget.h"

/// The text of a debugging run, read-only and wrapped: the newest lines, as LogsWidget shows them.
class DebuggingLogsEdit : public LogsWidget {
    Q_OBJECT
public:
    static constexpr int MaxLines = 20000;

    explicit DebuggingLogsEdit(QWidget* parent = nullptr) : LogsWidget(parent, MaxLines) {
        setObjectName("debugging_log");
        setAccessibleName(tr("Debug Log"));
    }
};
