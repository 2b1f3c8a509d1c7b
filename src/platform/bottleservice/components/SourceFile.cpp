#include "bottleservice/components/SourceFile.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

#include "fenk/system/RegularFile.h"

namespace SourceFile {

namespace {

constexpr int BlockBytes = 1024 * 1024;

}  // namespace

Reason writeFailure(const QFile& file) {
    return Reason::ofWriting(file.fileName(), file.error() == QFileDevice::ResourceError, file.errorString());
}

Reason readBlocks(QFile* file, const QString& name, const std::atomic_bool& cancelled, const Take& take) {
    for (;;) {
        const QByteArray block = file->read(BlockBytes);
        if (cancelled)
            return Reason::Cancelled;
        if (block.isEmpty())
            return file->error() == QFileDevice::NoError ? Reason() : Reason(Reason::NoOrdinaryFile, {name});
        const Reason failure = take(block);
        if (!failure.isEmpty())
            return failure;
    }
}

Reason check(const QString& path, const Source& source, const QString& address,
             const std::atomic_bool& cancelled) {
    QFile file;
    if (!Fenk::RegularFile::open(file, path, Fenk::RegularFile::Links::Followed))
        return Reason(Reason::NoOrdinaryFile, {path});
    if (source.size >= 0 && file.size() != source.size)
        return Reason(Reason::OtherSize,
                      {source.file, address, QString::number(file.size()), QString::number(source.size)});
    if (source.sha256.isEmpty())
        return {};
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const Reason failure = readBlocks(&file, path, cancelled, [&hash](const QByteArray& block) -> Reason {
        hash.addData(block);
        return {};
    });
    if (!failure.isEmpty())
        return failure;
    return hash.result().toHex() == source.sha256 ? Reason()
                                                  : Reason(Reason::OtherChecksum, {source.file, address});
}

Reason copy(const QString& from, const QString& to, const Source& wanted, qint64 limit,
            const std::atomic_bool& cancelled) {
    QFile source(from);
    QFile target(to);
    if (!QFileInfo(from).isFile() || !source.open(QIODevice::ReadOnly))
        return Reason(Reason::FetchFailed, {wanted.file, from, "it is not there"});
    if (!target.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return writeFailure(target);
    while (!source.atEnd()) {
        const QByteArray block = source.read(BlockBytes);
        if (cancelled)
            return Reason::Cancelled;
        if (block.isEmpty())
            return Reason(Reason::FetchFailed, {wanted.file, from, source.errorString()});
        if (target.size() + block.size() > limit)
            return Reason(Reason::TooLarge, {wanted.file, from});
        if (target.write(block) != block.size())
            return writeFailure(target);
    }
    return target.flush() ? Reason() : writeFailure(target);
}

}  // namespace SourceFile
