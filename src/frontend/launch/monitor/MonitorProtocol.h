#pragma once

#include <QList>
#include <QMap>
#include <QPair>
#include <QString>

/// Parses the output of enum_process_window.exe line by line. A cycle is:
///   ::process list
///   id - field - name         (the name may contain " - ")
///   ::window list
///   id - title
///   ::end
/// Ignores Wine's own processes, and windows that every process has.
class MonitorProtocol {
public:
    /// Returns true if the line completes a cycle. Ignores malformed lines.
    bool read(const QString& line);

    QMap<QString, QString> processList;         ///< process id to name
    QList<QPair<QString, QString>> windowList;  ///< process id and title

private:
    void readProcess(const QString& line);
    void readWindow(const QString& line);

    int readingWindows = 0;
};
