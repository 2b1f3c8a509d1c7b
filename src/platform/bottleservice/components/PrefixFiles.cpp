#include "bottleservice/components/PrefixFiles.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include "bottleservice/files/FileTree.h"

namespace PrefixFiles {

namespace {

const char Windows[] = "drive_c/windows/";
const char Temporary[] = ".cellarix-new";

enum class Machine { None, I386, Amd64, Other };

Machine machineOf(const QString& path) {
    constexpr int PeOffsetAt = 0x3c;
    constexpr quint16 I386 = 0x14c;
    constexpr quint16 Amd64 = 0x8664;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(PeOffsetAt))
        return Machine::None;
    const QByteArray offset = file.read(4);
    if (offset.size() != 4 || !file.seek(qFromLittleEndian<quint32>(offset.constData())))
        return Machine::None;
    const QByteArray header = file.read(6);
    if (header.size() != 6 || !header.startsWith(QByteArray("PE\0\0", 4)))
        return Machine::None;
    const quint16 machine = qFromLittleEndian<quint16>(header.constData() + 4);
    return machine == I386 ? Machine::I386 : machine == Amd64 ? Machine::Amd64 : Machine::Other;
}

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
    return machineOf(file) == Machine::I386;
}

QStringList systemDirectories(const QString& prefix, const QString& file) {
    const QString native = QString(Windows) + "system32";
    const QString other = QString(Windows) + "syswow64";
    const Machine machine = machineOf(file);
    if (machine == Machine::Other)
        return {};
    if (!is64Bit(prefix))
        return machine == Machine::Amd64 ? QStringList() : QStringList{native};
    if (machine == Machine::None)
        return {native, other};
    return {machine == Machine::Amd64 ? native : other};
}

QString put(const QString& prefix, const QString& file, const QString& directory) {
    return replace(prefix, directory, QFileInfo(file).fileName(), file, false);
}

QString putSystemFiles(const QString& prefix, const QStringList& files, bool only32Bit) {
    for (const QString& file : files) {
        if (only32Bit && machineOf(file) != Machine::I386)
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

QString putBack(const QString& prefix, const QString& templatePath, const QString& dll) {
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
