#pragma once

#include <QJsonObject>
#include <QStringList>
#include <QVector>
#include <atomic>

#include "bottleservice/bottles/BottleScan.h"

/// Makes records, each with an id and an icon, of programs that were found in a bottle and not entered yet.
/// Starts child processes; for worker threads. When cancelled, the rest is left out.
class FoundPrograms {
public:
    /// script is the path of icon_extractor.py.
    FoundPrograms(const QString& bottlePath, const QString& script, const std::atomic_bool& cancelled)
        : m_bottlePath(bottlePath), m_script(script), m_cancelled(cancelled) {}

    /// For the shortcuts that start something which none of the known records starts.
    QVector<QJsonObject> ofShortcuts(const QVector<BottleScan::Shortcut>& shortcuts,
                                     const QJsonObject& known) const;

    /// For those of the executables that likely() returns.
    QVector<QJsonObject> ofExecutables(const QStringList& files) const;

    /// The executables in drive_c that a user would start: no helpers, none of Wine's own, none in a folder
    /// below that of another one; at most MaximumLikely.
    static QStringList likely(const QString& bottlePath, QStringList files);

    static constexpr int MaximumLikely = 8;

private:
    QJsonObject record(const QString& name, const QString& path, const QString& arguments) const;
    void addIcon(QJsonObject* record, const QStringList& files) const;

    QString m_bottlePath;
    QString m_script;
    const std::atomic_bool& m_cancelled;
};
