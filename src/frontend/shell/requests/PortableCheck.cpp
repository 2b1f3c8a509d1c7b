#include "shell/requests/PortableCheck.h"

#include <archive.h>
#include <archive_entry.h>

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QDirIterator>
#include <memory>

#include "fenk/system/RegularFile.h"
#include "launch/inspection/OpenRefusal.h"

namespace {

constexpr int MostEntries = 300000;  // more, and the service refuses it
constexpr int BlockBytes = 64 * 1024;

struct Check {
    Q_DECLARE_TR_FUNCTIONS(PortableCheck)
};

bool isProgramName(const QByteArray& name) {
    const QByteArray lower = name.right(4).toLower();
    return lower == ".exe" || lower == ".bat";
}

QString noProgram() {
    return Check::tr("There is no Windows program (.exe) in it.");
}

QString faultOfEntries(struct archive* reader, const std::atomic_bool& isCancelled) {
    archive_entry* entry = nullptr;
    for (int looked = 0; looked < MostEntries && !isCancelled; ++looked) {
        const int status = archive_read_next_header(reader, &entry);
        if (status == ARCHIVE_EOF)
            return noProgram();
        if (status < ARCHIVE_WARN)
            return Check::tr("It is damaged, or no zip archive.");
        if (archive_entry_is_encrypted(entry))
            return Check::tr("It is protected by a password. Unpack it, then add the folder.");
        const char* name = archive_entry_pathname(entry);
        if (archive_entry_filetype(entry) == AE_IFREG &&
            isProgramName(name ? name : archive_entry_pathname_utf8(entry)))
            return {};
    }
    return {};
}

}  // namespace

QString PortableCheck::folder(const QString& path, const std::atomic_bool& isCancelled) {
    const QString folder = QDir(path).canonicalPath();
    if (QString(QDir(QDir::homePath()).canonicalPath() + '/')
            .startsWith(folder == "/" ? folder : folder + '/'))
        return Check::tr("It holds more than one program: choose the program's own folder.");
    QDirIterator files(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    for (int looked = 0; looked < MostEntries && !isCancelled; ++looked) {
        if (!files.hasNext())
            return noProgram();
        files.next();
        if (isProgramName(files.fileName().toUtf8()) && files.fileInfo().isFile())
            return {};
    }
    return {};
}

QString PortableCheck::archive(const QString& path, const std::atomic_bool& isCancelled) {
    QFile source;
    if (!Fenk::RegularFile::open(source, path, Fenk::RegularFile::Links::Followed)) {
        const OpenRefusal refusal = OpenRefusal::ofOther(path);
        return refusal.reason + '\n' + refusal.advice;
    }
    const std::unique_ptr<struct archive, int (*)(struct archive*)> reader(archive_read_new(),
                                                                           &archive_read_free);
    archive_read_support_format_zip_seekable(reader.get());
    if (archive_read_open_fd(reader.get(), source.handle(), BlockBytes) != ARCHIVE_OK)
        return Check::tr("It is damaged, or no zip archive.");
    return faultOfEntries(reader.get(), isCancelled);
}
