#include "bottleservice/components/PrefixFiles.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "bottleservice/files/FileTree.h"
#include "bottleservice/wine/PeFile.h"

namespace PrefixFiles {

namespace {

const char Windows[] = "drive_c/windows/";
const char Temporary[] = ".cellarix-new";

bool isRealDirectory(const QString& prefix, const QString& relative) {
    QString path = prefix;
    for (const QString& part : relative.split('/', Qt::SkipEmptyParts)) {
        path += '/' + part;
        struct stat status = {};
        if (::lstat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISDIR(status.st_mode))
            return false;
    }
    return true;
}

QString replace(const QString& prefix, const QString& directory, const QString& name, const QString& source,
                bool asLink) {
    const QString fault = QString("Cannot put %1 into %2 of the bottle.").arg(name, directory);
    if (!isRealDirectory(prefix, directory))
        return fault;
    const QString path = prefix + '/' + directory + '/' + name;
    const QString temporary = path + Temporary;
    QFile::remove(temporary);
    const bool made = asLink ? QFile::link(source, temporary) : FileTree::copyFile(source, temporary);
    if (made && ::rename(QFile::encodeName(temporary).constData(), QFile::encodeName(path).constData()) == 0)
        return {};
    QFile::remove(temporary);
    return fault;
}

}  // namespace

bool is64Bit(const QString& prefix) {
    return QFileInfo(prefix + '/' + Windows + "syswow64").isDir();
}

bool is32BitProgram(const QString& file) {
    return PeFile::read(file).machine == PeFile::MachineI386;
}

QStringList systemDirectories(const QString& prefix, const QString& file) {
    const QString native = QString(Windows) + "system32";
    const QString other = QString(Windows) + "syswow64";
    const quint16 machine = PeFile::read(file).machine;
    if (machine != 0 && machine != PeFile::MachineI386 && machine != PeFile::MachineAmd64)
        return {};
    if (!is64Bit(prefix))
        return machine == PeFile::MachineAmd64 ? QStringList() : QStringList{native};
    if (machine == 0)
        return {native, other};
    return {machine == PeFile::MachineAmd64 ? native : other};
}

QString put(const QString& prefix, const QString& file, const QString& directory) {
    return replace(prefix, directory, QFileInfo(file).fileName(), file, false);
}

QString putSystemFiles(const QString& prefix, const QStringList& files, bool only32Bit) {
    for (const QString& file : files) {
        if (only32Bit && !is32BitProgram(file))
            continue;
        for (const QString& directory : systemDirectories(prefix, file)) {
            const QString fault = put(prefix, file, directory);
            if (!fault.isEmpty())
                return fault;
        }
    }
    return {};
}

QString putFonts(const QString& prefix, const QStringList& files) {
    const QString directory = QString(Windows) + "Fonts";
    if (isRealDirectory(prefix, Windows))
        QDir().mkdir(prefix + '/' + directory);
    for (const QString& file : files) {
        const QString fault = put(prefix, file, directory);
        if (!fault.isEmpty())
            return fault;
    }
    return {};
}

QString restoreOwn(const QString& prefix, const QString& templatePath, const QString& dll) {
    for (const char* system : {"system32", "syswow64"}) {
        const QString directory = QString(Windows) + system;
        if (!isRealDirectory(prefix, directory))
            continue;
        const QFileInfo own(templatePath + '/' + directory + '/' + dll);
        QString fault;
        if (own.isSymLink())
            fault = replace(prefix, directory, dll, QFile::symLinkTarget(own.filePath()), true);
        else if (own.isFile())
            fault = replace(prefix, directory, dll, own.filePath(), false);
        else
            QFile::remove(prefix + '/' + directory + '/' + dll);
        if (!fault.isEmpty())
            return fault;
    }
    return {};
}

}  // namespace PrefixFiles
