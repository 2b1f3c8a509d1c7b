#pragma once

#include <QList>
#include <QMap>
#include <QPair>
#include <QString>

/// What enum_process_window.exe prints again and again, one line at a time:
///   ::process list
///   id - field - name         (the name may hold " - ")
///   ::window list
///   id - title
///   ::end
/// Keeps what counts as the program: Wine's own processes, and windows that exist in every process, do not.
class MonitorProtocol {
public:
    /// True when the line completes a cycle. A line of another form is dropped.
    bool read(const QString& line);

    QMap<QString, QString> processList;         ///< process id to name
    QList<QPair<QString, QString>> windowList;  ///< process id and title

private:
    void readProcess(const QString& line);
    void readWindow(const QString& line);

    int readingWindows = 0;
};
