#include "launch/records/EventRecord.h"

#include <QFile>
#include <QJsonDocument>

#include "core/base/BuildInfo.h"
#include "fenk/system/RegularFile.h"
#include "launch/inspection/ExeFileInfo.h"

namespace {

constexpr qint64 MaximumLogBytes = 0xa00000;
constexpr int MaximumLineLength = 1024;

}  // namespace

QJsonObject EventRecord::common(const QDateTime& now, const QJsonObject& machine, Tid tid) {
    return {{"tid", int(tid)},
            {"version", BuildInfo::version()},
            {"machine", machine},
            {"time", now.toString("yyyy-MM-dd hh:mm:ss")}};
}

QString EventRecord::base64(const QString& text) {
    return QString::fromLatin1(text.toLocal8Bit().toBase64());
}

QString EventRecord::fileInfo64(const QString& path) {
    return base64(QString::fromUtf8(QJsonDocument(exeFileInfo(path)).toJson(QJsonDocument::Compact)));
}

QStringList EventRecord::logTail(const QString& path) {
    QFile file;
    if (!Fenk::RegularFile::open(file, path))
        return {};
    if (file.size() > MaximumLogBytes)
        file.seek(file.size() - MaximumLogBytes);
    QByteArray text = file.read(MaximumLogBytes);
    if (text.endsWith('\n'))
        text.chop(1);
    QStringList kept;
    for (int end = text.size(); end >= 0 && kept.size() < LogLines;) {
        const int begin = end > 0 ? text.lastIndexOf('\n', end - 1) + 1 : 0;
        QByteArray line = text.mid(begin, end - begin);
        end = begin - 1;
        if (line.endsWith('\r'))
            line.chop(1);
        // A UTF-8 character takes at most four bytes.
        if (line.contains(":trace:") || line.size() > 4 * MaximumLineLength)
            continue;
        const QString decoded = QString::fromUtf8(line);
        if (decoded.size() <= MaximumLineLength)
            kept.prepend(decoded);
    }
    return kept;
}
