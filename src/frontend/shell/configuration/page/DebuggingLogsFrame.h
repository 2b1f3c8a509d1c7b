#pragma once

#include <QTime>
#include <QWidget>

#include "shell/configuration/hints/HintRules.h"
#include "shell/configuration/page/LiveLog.h"

class DebuggingLogsEdit;
class DebuggingLogsView;
class QStackedWidget;

namespace Fenk {
class Spinner;
}

/// The log pane below the pages: the lines of the last debugging run and, when it has ended, hints beside
/// them; a header that empties it and opens the folder of the logs.
class DebuggingLogsFrame : public QWidget {
    Q_OBJECT
public:
    explicit DebuggingLogsFrame(QWidget* parent = nullptr);

    DebuggingLogsEdit* log() const { return m_log; }
    DebuggingLogsView* hints() const { return m_hints; }
    void append(const QVector<LiveLogLine>& lines) { addLines(lines, QTime::currentTime()); }
    /// Lines of an earlier run: when they were printed is not known.
    void appendEarlier(const QVector<LiveLogLine>& lines) { addLines(lines, {}); }
    /// Drops lines and hints.
    void clear();

    /// Shows that the log is being read.
    void setReading(bool reading);
    void showHints(const QVector<Hint>& hints);

Q_SIGNALS:
    /// By the user; what is still being read is not wanted either.
    void cleared();
    void folderRequested();
    void anchorClicked(const QUrl& anchor);

private:
    void addLines(const QVector<LiveLogLine>& lines, const QTime& time);
    QWidget* makeLogPart();
    QWidget* makeHintsPart();

    QStackedWidget* m_pages;
    DebuggingLogsEdit* m_log;
    DebuggingLogsView* m_hints;
    QWidget* m_hintsPart = nullptr;
    Fenk::Spinner* m_spinner;
};
