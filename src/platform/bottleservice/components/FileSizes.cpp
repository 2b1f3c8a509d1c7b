#include "bottleservice/components/FileSizes.h"

#include <QDebug>
#include <QJsonDocument>

#include "bottleservice/files/AtomicFile.h"
#include "fenk/system/RegularFile.h"

namespace {

constexpr qint64 MaximumRecord = 1024 * 1024;
const char RecordFile[] = "/file-sizes.json";

}  // namespace

QJsonObject FileSizes::remembered(const QString& dataDir) {
    const auto text = Fenk::RegularFile::read(dataDir + RecordFile, MaximumRecord);
    return QJsonDocument::fromJson(text.value_or(QByteArray())).object();
}

void FileSizes::remember(const QString& dataDir, const QByteArray& sha256, qint64 size) {
    QJsonObject record = remembered(dataDir);
    const QString key = QString::fromLatin1(sha256);
    if (record[key].toDouble() == double(size))
        return;
    record.insert(key, double(size));
    QString error;
    const QByteArray text = QJsonDocument(record).toJson();
    if (!AtomicFile::replace(dataDir + RecordFile, text, &error, AtomicFile::Safety::Quick))
        qWarning() << "the size of a file is not kept:" << error;
}
