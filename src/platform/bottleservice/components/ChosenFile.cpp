#include "bottleservice/components/ChosenFile.h"

#include <unistd.h>

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QMutex>
#include <QTemporaryFile>
#include <algorithm>

#include "bottleservice/components/SourceFile.h"
#include "bottleservice/files/AtomicFile.h"
#include "fenk/system/RegularFile.h"

namespace {

constexpr qint64 MaximumRecord = 1024 * 1024;
const char RecordFile[] = "/chosen-files.json";
const QLatin1String CopyPrefix(".chosen-");  // wanted files never have such names
QMutex recordMutex;

/// Whether a checksum is known that does not come from a file of the user.
bool hasChecksum(const Source& source) {
    return !source.sha256.isEmpty() && !source.isChosen;
}

/// Whether a file of this size and name may be wanted; others are not even copied.
bool mayBeWanted(const QVector<Source>& wanted, qint64 size, const QString& name) {
    return std::any_of(wanted.begin(), wanted.end(), [size, &name](const Source& source) {
        return hasChecksum(source) ? source.size < 0 || source.size == size
                                   : source.file.compare(name, Qt::CaseInsensitive) == 0;
    });
}

/// The wanted file with this checksum or, where none is known, with this name.
const Source* match(const QVector<Source>& wanted, const QByteArray& sha256, const QString& name) {
    for (const Source& source : wanted) {
        if (hasChecksum(source) && source.sha256 == sha256)
            return &source;
    }
    for (const Source& source : wanted) {
        if (!hasChecksum(source) && source.file.compare(name, Qt::CaseInsensitive) == 0)
            return &source;
    }
    return nullptr;
}

Reason otherFile(const QVector<Source>& wanted, const QString& name) {
    QStringList files;
    for (const Source& source : wanted)
        files += source.addresses.isEmpty()
                     ? source.file
                     : QString("%1 (%2)").arg(source.file, source.shownAddress(source.addresses.last()));
    return Reason(Reason::OtherFile, {name, files.join(", ")});
}

/// `name` is that of the file to read, for the reason.
Reason copy(QFile* from, const QString& name, QFile* to, QCryptographicHash* hash,
            const std::atomic_bool& cancelled) {
    qint64 total = 0;
    const Reason failure =
        SourceFile::readBlocks(from, name, cancelled, [&](const QByteArray& block) -> Reason {
            total += block.size();
            if (total > Source::MaximumBytes)
                return Reason(Reason::NoOrdinaryFile, {name});
            hash->addData(block);
            return to->write(block) == block.size() ? Reason() : SourceFile::writeFailure(*to);
        });
    if (!failure.isEmpty())
        return failure;
    return to->flush() && ::fsync(to->handle()) == 0 ? Reason() : SourceFile::writeFailure(*to);
}

}  // namespace

ChosenFile::Taken ChosenFile::take(const QString& path, const QVector<Source>& wanted,
                                   const QString& directory, const std::atomic_bool& cancelled) {
    const QString name = QFileInfo(path).fileName().left(200);
    QFile from;
    if (!QDir::isAbsolutePath(path) || path.contains(QChar(0)) || !Fenk::RegularFile::open(from, path) ||
        from.size() == 0 || from.size() > Source::MaximumBytes)
        return {{}, {}, Reason(Reason::NoOrdinaryFile, {name})};
    if (!mayBeWanted(wanted, from.size(), name))
        return {{}, {}, otherFile(wanted, name)};
    QDir().mkpath(directory);
    QTemporaryFile to(directory + '/' + CopyPrefix + "XXXXXX");
    if (!to.open())
        return {{}, {}, Reason::ofWriting(directory, false, to.errorString())};
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const Reason fault = copy(&from, name, &to, &hash, cancelled);
    if (!fault.isEmpty())
        return {{}, {}, fault};
    const QByteArray sha256 = hash.result().toHex();
    const Source* source = match(wanted, sha256, name);
    if (!source)
        return {{}, sha256, otherFile(wanted, name)};
    const QByteArray target = QFile::encodeName(directory + '/' + source->file);
    if (::rename(QFile::encodeName(to.fileName()).constData(), target.constData()) != 0)
        return {{}, sha256, Reason::ofWriting(source->file, false, QString::fromLocal8Bit(strerror(errno)))};
    to.setAutoRemove(false);
    return {source->file, sha256, {}};
}

Reason ChosenFile::remember(const QString& dataDir, const QString& file, const QByteArray& sha256) {
    const QMutexLocker alone(&recordMutex);
    QJsonObject record = remembered(dataDir);
    record.insert(file, QString::fromLatin1(sha256));
    QString error;
    AtomicFile::replace(dataDir + RecordFile, QJsonDocument(record).toJson(), &error);
    return error;
}

QJsonObject ChosenFile::remembered(const QString& dataDir) {
    const auto text = Fenk::RegularFile::read(dataDir + RecordFile, MaximumRecord);
    return QJsonDocument::fromJson(text.value_or(QByteArray())).object();
}

void ChosenFile::removeLeftovers(const QString& directory) {
    const QDir downloads(directory);
    for (const QString& name : downloads.entryList({CopyPrefix + '*'}, QDir::Files | QDir::Hidden)) {
        qWarning() << "an earlier run of the service was interrupted; removing what it left:"
                   << downloads.filePath(name);
        QFile::remove(downloads.filePath(name));
    }
}
