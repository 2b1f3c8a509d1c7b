#include "shell/adding/AddedFile.h"

#include <QDebug>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include "fenk/system/RegularFile.h"
#include "launch/inspection/OpenRefusal.h"
#include "launch/inspection/ProgramHeader.h"
#include "store/install/ManifestFacts.h"
#include "store/install/SetupDownload.h"

namespace {

constexpr int MostEntries = 20000;  // of a folder, until it is taken on trust

AddedFile refused(const QString& path, const QString& reason) {
    qWarning().noquote() << "cannot add" << path << reason;
    AddedFile file;
    file.path = path;
    file.reason = reason;
    return file;
}

AddedFile refused(const QString& path, const OpenRefusal& refusal) {
    return refused(path, refusal.advice.isEmpty() ? refusal.reason : refusal.reason + '\n' + refusal.advice);
}

AddedFile accepted(AddedFile::Kind kind, const QString& path) {
    AddedFile file;
    file.kind = kind;
    file.path = path;
    return file;
}

AddedFile checkManifest(const QString& path) {
    QFile source;
    if (!Fenk::RegularFile::open(source, path, Fenk::RegularFile::Links::Followed))
        return refused(path, OpenRefusal::ofOther(path));
    const QByteArray text = source.read(ManifestFacts::MaximumBytes + 1);
    QString error;
    if (!ManifestFacts::read(text, &error)) {
        qWarning().noquote() << path << "is no manifest:" << error;
        return refused(
            path,
            AddedFile::tr("It is no manifest of an application: it needs at least a Name and a DebInfo."));
    }
    AddedFile file = accepted(AddedFile::Manifest, path);
    file.manifest = text;
    return file;
}

AddedFile checkProgram(const QString& path, const QString& suffix) {
    if (const OpenRefusal refusal = OpenRefusal::of(path))
        return refused(path, refusal);
    const ProgramHeader header = ProgramHeader::read(path);
    const bool isOfItsKind =
        suffix == QLatin1String("msi") ? header.format == ProgramHeader::Compound : header.isProgram();
    if (!isOfItsKind)
        return refused(path, AddedFile::tr("Its content is not what its name says."));
    return accepted(AddedFile::Program, path);
}

AddedFile checkFolder(const QString& path) {
    const QString folder = QDir(path).canonicalPath();
    if (QString(QDir(QDir::homePath()).canonicalPath() + '/')
            .startsWith(folder == "/" ? folder : folder + '/'))
        return refused(path,
                       AddedFile::tr("It holds more than one program: choose the program's own folder."));
    QDirIterator files(folder, {"*.exe"}, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::AllDirs,
                       QDirIterator::Subdirectories);
    for (int looked = 0; looked < MostEntries; ++looked) {
        if (!files.hasNext())
            return refused(path, AddedFile::tr("There is no Windows program (.exe) in it."));
        files.next();
        if (files.fileInfo().isFile())
            break;
    }
    return accepted(AddedFile::Portable, path);
}

}  // namespace

AddedFile AddedFile::check(const QString& path) {
    const QFileInfo info(path);
    const QString suffix = info.suffix().toLower();
    if (info.isDir())
        return checkFolder(path);
    if (suffix == QLatin1String("yml"))
        return checkManifest(path);
    if (suffix == QLatin1String("exe") || suffix == QLatin1String("msi"))
        return checkProgram(path, suffix);
    if (suffix == QLatin1String("zip") && ProgramHeader::read(path).format == ProgramHeader::Archive)
        return accepted(Portable, path);
    return refused(path, OpenRefusal::ofOther(path));
}

AddedLink AddedLink::of(const QList<QUrl>& urls) {
    if (urls.size() > 1)
        return {{}, {}, AddedFile::tr("These are several files. Please add one after the other.")};
    const QUrl url = urls.value(0);
    if (url.isLocalFile() && url.host().isEmpty())
        return {url.toLocalFile(), {}, {}};
    if (SetupDownload::canFetch(url))
        return {{}, url, {}};
    return {
        {},
        {},
        AddedFile::tr(
            "Only files of this computer and addresses that begin with http:// or https:// can be added.")};
}
