#include <sys/mman.h>
#include <unistd.h>

#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>
#include <cstdlib>

#include "bottleservice/backup/BackupLinks.h"
#include "bottleservice/backup/BackupPath.h"
#include "bottleservice/backup/BackupReader.h"
#include "bottleservice/files/TreeRemover.h"

namespace {

void require(bool isTrue) {
    if (!isTrue)
        std::abort();
}

/// What a list promises that was accepted.
void checkList(const BackupList& list) {
    qint64 total = 0;
    const BackupLinks links(list);
    for (const BackupEntry& entry : list.entries) {
        require(BackupPath::isInside(entry.path) && !BackupPath::isPassedOver(entry.path));
        require(entry.type != BackupEntry::Type::Link || BackupPath::staysInside(entry.path, entry.target));
        require(entry.type != BackupEntry::Type::Link || !links.leadsOut(entry));
        require(entry.size >= 0 && (entry.mode & ~0755) == 0);
        require(BackupPath::fromText(BackupPath::toText(entry.path)) == entry.path);
        total += entry.size;
    }
    require(total == list.bytes());
    QString error;
    const auto again = BackupList::parse(list.toJson(), &error);
    require(again && again->entries.size() == list.entries.size());
}

/// Unpacks an archive, and looks whether anything has come out beside the bottle.
void checkArchive(const std::uint8_t* data, std::size_t size) {
    const int file = memfd_create("backup", 0);
    require(file >= 0 && write(file, data, size) == ssize_t(size));
    const QTemporaryDir place("/dev/shm/fuzz-backup-XXXXXX");
    QDir(place.path()).mkdir("bottle");
    QDir(place.path()).mkdir("template");
    BackupReader reader(QString("/proc/self/fd/%1").arg(file));
    Reason failure;
    if (const auto list = reader.readList(&failure)) {
        checkList(*list);
        BackupFile::Progress progress;
        reader.unpack(*list, place.path() + "/bottle", place.path() + "/template", &progress);
    }
    require(QDir(place.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot) ==
            QStringList({"bottle", "template"}));
    close(file);
    QString error;
    require(TreeRemover::remove(place.path() + "/bottle", &error));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 0 && data[0] == '{') {
        QString error;
        if (const auto list =
                BackupList::parse(QByteArray(reinterpret_cast<const char*>(data), int(size)), &error))
            checkList(*list);
        return 0;
    }
    checkArchive(data, size);
    return 0;
}
