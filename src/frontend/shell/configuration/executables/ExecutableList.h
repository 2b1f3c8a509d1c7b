#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QVector>
#include <functional>

/// One program that lies in a bottle. All texts are untrusted.
struct Executable {
    QString name;
    QString path;  ///< Windows or Unix path, as in the record
    QJsonObject record;
    bool isEntered = true;  ///< among the bottle's programs; otherwise the service has found it
};

namespace ExecutableList {

/// The bottle's programs and those that the service has found, as it lists them; each file once. A program
/// without a name gets one from `nameOfFile`, which is asked with its Unix path, and the file's name if that
/// is empty, too. Looks at files; for worker threads.
QVector<Executable> of(const QString& bottlePath, const QJsonArray& programs,
                       const std::function<QString(const QString& file)>& nameOfFile);

/// The name in the version block of the file; empty without one. Waits for a tool, at most 30 s.
QString nameInVersionBlock(const QString& file);

}  // namespace ExecutableList
