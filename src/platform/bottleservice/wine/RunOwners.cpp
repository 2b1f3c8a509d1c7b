#include "bottleservice/wine/RunOwners.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>

#include "bottleservice/bottles/WindowsPath.h"
#include "bottleservice/wine/RunningPrograms.h"

namespace {

constexpr int MaximumFiles = 1000;

}  // namespace

RunOwners::RunOwners(const QString& bottlePath, const QJsonObject& records)
    : m_bottlePath(bottlePath), m_records(records) {
    for (auto record = records.begin(); record != records.end(); ++record) {
        const QJsonObject program = record.value().toObject();
        const Program known{record.key(), program["path"].toString()};
        if (program["arguments"].toString().isEmpty())
            m_programs.prepend(known);
        else
            m_programs.append(known);
    }
}

/// Empty when there is no such file.
QString RunOwners::realFile(const QString& path) const {
    const auto known = m_files.constFind(path);
    if (known != m_files.constEnd())
        return *known;
    const QString file = WindowsPath::toUnix(m_bottlePath, path);
    const QString real = file.startsWith('/') ? QFileInfo(file).canonicalFilePath() : QString();
    if (m_files.size() >= MaximumFiles)
        m_files.clear();
    m_files.insert(path, real);
    return real;
}

QString RunOwners::ownerOf(const QString& path) const {
    const QString file = realFile(path);
    const auto found = std::find_if(m_programs.begin(), m_programs.end(), [&](const Program& program) {
        return !file.isEmpty() && realFile(program.path) == file;
    });
    return found == m_programs.end() ? QString() : found->id;
}

QStringList RunOwners::of(const Processes::Entry& process) const {
    if (RunningPrograms::isHelper(process))
        return {};
    const QString mark = QString::fromUtf8(process.program);
    const auto marked = std::find_if(m_programs.begin(), m_programs.end(),
                                     [&mark](const Program& program) { return program.id == mark; });
    const QString own = RunningPrograms::programOf(process.commandLine);
    QStringList owners;
    if (marked == m_programs.end())
        owners << ownerOf(QFile::decodeName(process.file)) << ownerOf(own);
    else if (realFile(own) == realFile(marked->path))
        owners << mark;  // other programs may have the same file and other arguments
    else
        owners << mark << ownerOf(own);
    owners.removeAll({});
    owners.removeDuplicates();
    return owners;
}

QString RunOwners::of(const LaunchRecord::Claim& claim) const {
    const bool isId = std::any_of(m_programs.begin(), m_programs.end(),
                                  [&claim](const Program& program) { return program.id == claim.name; });
    return isId ? claim.name : ownerOf(claim.file);
}

std::vector<Processes::Entry> RunOwners::processesOf(const QString& id,
                                                     const std::vector<Processes::Entry>& processes) const {
    std::vector<Processes::Entry> found;
    for (const Processes::Entry& process : processes) {
        const bool isMarked = process.program == id.toUtf8() && !Processes::servesWholeBottle(process);
        if (isMarked || of(process).contains(id))
            found.push_back(process);
    }
    return found;
}
