#pragma once

#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QVector>

/// One program that lies in a bottle. All texts are untrusted.
struct Executable {
    QString name;
    QString path;  ///< Windows or Unix path, as in the record
    QJsonObject record;
    bool isEntered = true;   ///< among the bottle's programs; otherwise the service has found it
    QString file;            ///< Unix path
    bool isNamed = true;     ///< by the record; otherwise the name is that of the file
    QString place{};         ///< to be shown instead of the path; may be empty
    QList<QImage> images{};  ///< of its icon, if they were read
};

namespace ExecutableList {

/// The bottle's programs and those that the service has found, as it lists them; each file once. Looks at
/// files; for worker threads.
QVector<Executable> of(const QString& bottlePath, const QJsonArray& programs);

/// The record with which it is entered.
QJsonObject entryOf(const Executable& executable);

/// The name in the version block of the file; empty without one. Waits for a tool, at most 30 s.
QString nameInVersionBlock(const QString& file);

}  // namespace ExecutableList
