#pragma once

#include <QJsonObject>
#include <QStringList>
#include <QVector>
#include <atomic>

#include "bottleservice/bottles/BottleScan.h"

/// Records of programs that nobody has entered yet, made of what was found in a bottle, each with an id and
/// an icon. Making one runs a child process: for worker threads. When cancelled, the rest is left out.
class FoundPrograms {
public:
    /// script is the path of icon_extractor.py.
    FoundPrograms(const QString& bottlePath, const QString& script, const std::atomic_bool& cancelled)
        : m_bottlePath(bottlePath), m_script(script), m_cancelled(cancelled) {}

    /// Of the shortcuts that start something which none of the known records starts.
    QVector<QJsonObject> ofShortcuts(const QVector<BottleScan::Shortcut>& shortcuts,
                                     const QJsonObject& known) const;

    /// Of those executables that somebody would start: see likely().
    QVector<QJsonObject> ofExecutables(const QStringList& files) const;

    /// The paths of executables in drive_c that are worth an entry: neither helpers nor Wine's own, nor those
    /// in a folder below that of another one, and MaximumLikely at most.
    static QStringList likely(const QString& bottlePath, QStringList files);

    static constexpr int MaximumLikely = 8;

private:
    QJsonObject record(const QString& name, const QString& path, const QString& arguments) const;
    void addIcon(QJsonObject* record, const QStringList& files) const;

    QString m_bottlePath;
    QString m_script;
    const std::atomic_bool& m_cancelled;
};
