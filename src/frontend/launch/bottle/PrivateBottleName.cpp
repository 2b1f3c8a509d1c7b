#include "launch/bottle/PrivateBottleName.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

constexpr qint64 MiB = 1024 * 1024;
constexpr qint64 BlockSize = 0xb00000;
constexpr qint64 TailSize = MiB;
constexpr qint64 HeadSize = BlockSize - TailSize;
constexpr int NameLimit = 50;

/// Hashes `size` bytes from the current position. Returns fewer on a read error or if the file shrank.
qint64 hashFrom(QFile& file, qint64 size, QCryptographicHash& hash) {
    QByteArray buffer(int(qMin(size, MiB)), Qt::Uninitialized);
    qint64 done = 0;
    while (done < size) {
        const qint64 got = file.read(buffer.data(), qMin<qint64>(buffer.size(), size - done));
        if (got <= 0)
            break;
        hash.addData(buffer.constData(), int(got));
        done += got;
    }
    return done;
}

}  // namespace

QString partialFileMd5(const QString& path) {
    // Opening a FIFO would block until it has a writer.
    if (!QFileInfo(path).isFile()) {
        qWarning() << "cannot read" << path << "which is no regular file";
        return {};
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning() << "cannot read" << path << file.errorString();
        return {};
    }
    const qint64 size = file.size();
    QCryptographicHash hash(QCryptographicHash::Md5);
    qint64 wanted = 0;
    qint64 hashed = 0;
    if (size >= TailSize) {
        wanted = TailSize;
        file.seek(size - TailSize);
        hashed = hashFrom(file, TailSize, hash);
        file.seek(0);
    }
    const qint64 head = qMin(size, HeadSize);
    wanted += head;
    hashed += hashFrom(file, head, hash);
    if (hashed != wanted) {
        qWarning() << "cannot read" << path << file.errorString();
        return {};
    }
    const QByteArray zeros(int(qMin(BlockSize - hashed, MiB)), '\0');
    for (qint64 left = BlockSize - hashed; left > 0; left -= zeros.size())
        hash.addData(zeros.constData(), int(qMin<qint64>(left, zeros.size())));
    return QString::fromLatin1(hash.result().toHex());
}

QString privateBottleName(const QString& fileName, const QString& md5) {
    QString name = fileName;
    if (name.size() > NameLimit) {
        // Don't cut a surrogate pair; D-Bus rejects half of one.
        const int cut = name.at(NameLimit - 1).isHighSurrogate() ? NameLimit - 1 : NameLimit;
        name = name.left(cut) + "-";
    }
    static const QRegularExpression unwanted("[\\$\\[\\]\\(\\) \\n\\t\\*\\?]");
    return QString(name + md5).remove(unwanted);
}

QString privateBottleNameOf(const QString& path) {
    return privateBottleName(QFileInfo(path).fileName(), partialFileMd5(path));
}
