#include "bottleservice/portable/PortableSource.h"

#include <QFileInfo>
#include <cerrno>
#include <cstring>

#include "bottleservice/portable/PortableArchive.h"
#include "bottleservice/portable/PortableFolder.h"
#include "bottleservice/portable/PortableName.h"
#include "fenk/system/ExecutableKind.h"

namespace {
constexpr int MaximumLeftOut = 200;
}

std::unique_ptr<PortableSource> PortableSource::at(const QString& path, Reason* failure) {
    const QFileInfo info(path);
    if (path.startsWith('/') && info.isReadable()) {
        // A link to the program is the user's own choice.
        const QString real = info.canonicalFilePath();
        if (info.isDir())
            return std::make_unique<PortableFolder>(real);
        if (info.isFile())
            return std::make_unique<PortableArchive>(real);
    }
    *failure =
        Reason(Reason::CannotRead, {path, QString::fromLocal8Bit(strerror(info.exists() ? EACCES : ENOENT))});
    return nullptr;
}

Reason PortableSource::cannotWrite(const QString& path, int error) {
    return error == ENOSPC || error == EDQUOT
               ? Reason(Reason::DiskFull, {QFileInfo(path).path()})
               : Reason(Reason::CannotWrite, {path, QString::fromLocal8Bit(strerror(error))});
}

void PortableSource::noteFile(const QString& name, qint64 bytes) {
    m_bytes += bytes;
    m_hasProgram =
        m_hasProgram || isExecutable(name) || name.endsWith(QLatin1String(".bat"), Qt::CaseInsensitive);
}

void PortableSource::noteProgram(const QString& name, const PeFile& headers) {
    if (Fenk::executableKind(name.section('/', -1), PortableName::folder(m_path)) !=
        Fenk::ExecutableKind::Program)
        return;
    m_has32Bit = m_has32Bit || headers.machine == PeFile::MachineI386;
    m_has64Bit = m_has64Bit || headers.machine == PeFile::MachineAmd64;
}

Reason PortableSource::checkPrograms() const {
    return m_hasProgram ? Reason() : Reason(Reason::NoPrograms, {QFileInfo(m_path).fileName()});
}

void PortableSource::leaveOut(const QString& path) {
    if (m_leftOut.size() < MaximumLeftOut)
        m_leftOut += path;
}
