#pragma once

#include <QWidget>

class LogsWidget;
class QStackedWidget;

/// The log pane below the pages: the lines of the last debugging run, with a header that empties it and
/// opens the folder of the logs.
class DebuggingLogsFrame : public QWidget {
    Q_OBJECT
public:
    explicit DebuggingLogsFrame(QWidget* parent = nullptr);

    LogsWidget* log() const { return m_log; }
    void append(const QString& line, bool isError);
    void clear();

Q_SIGNALS:
    void folderRequested();

private:
    QStackedWidget* m_pages;
    LogsWidget* m_log;
};
