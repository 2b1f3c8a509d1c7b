#include <sys/mman.h>
#include <unistd.h>

#include <QDir>
#include <QTemporaryDir>
#include <cstdlib>

#include "bottleservice/portable/ArchiveNames.h"
#include "bottleservice/portable/PortableArchive.h"
#include "bottleservice/portable/PortableName.h"

namespace {

void require(bool isTrue) {
    if (!isTrue)
        std::abort();
}

void checkNames(const QByteArray& bytes) {
    const QString text = ArchiveNames::decoded({bytes}, QLocale::Chinese).value(0);
    for (const QString& name : {PortableName::folder(text), PortableName::bottle(text)})
        require(!name.isEmpty() && !name.contains('/') && !name.contains('\\') && !name.startsWith("..") &&
                name.size() <= PortableName::MaximumCharacters + 9);
}

}  // namespace

/// Unpacks an archive, and looks whether anything has come out beside its directory.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    checkNames(QByteArray(reinterpret_cast<const char*>(data), int(std::min<std::size_t>(size, 300))));
    const int file = memfd_create("portable", 0);
    require(file >= 0 && write(file, data, size) == ssize_t(size));
    const QTemporaryDir place("/dev/shm/fuzz-portable-XXXXXX");
    QDir(place.path()).mkdir("copy");
    PortableArchive source(QString("/proc/self/fd/%1").arg(file));
    BackupFile::Progress progress;
    if (source.survey(progress.cancelled).isEmpty() && source.bytes() < (1 << 24)) {
        source.copyTo(place.path() + "/copy", &progress);
        require(progress.done <= source.bytes());
    }
    require(QDir(place.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot) ==
            QStringList("copy"));
    close(file);
    return 0;
}
