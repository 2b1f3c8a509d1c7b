#include "bottleservice/wine/RunOwners.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>

#include "bottleservice/bottles/WindowsPath.h"
#include "bottleservice/wine/RunningPrograms.h"

RunOwners::RunOwners(const QString& bottlePath, const QJsonObject& records) : m_bottlePath(bottlePath) {
    for (auto record = records.begin(); record != records.end(); ++record) {
        const QJsonObject program = record.value().toObject();
        const Program known{record.key(), realFile(program["path"].toString())};
        if (program["arguments"].toString().isEmpty())
            m_programs.prepend(known);
        else
            m_programs.append(known);
    }
}

/// Empty for what is no file.
QString RunOwners::realFile(const QString& path) const {
    const QString file = WindowsPath::toUnix(m_bottlePath, path);
    return file.startsWith('/') ? QFileInfo(file).canonicalFilePath() : QString();
}

QString RunOwners::ownerOf(const QString& path) const {
    const QString file = realFile(path);
    const auto found = std::find_if(m_programs.begin(), m_programs.end(), [&file](const Program& program) {
        return !file.isEmpty() && program.file == file;
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
    else if (realFile(own) == marked->file)
        owners << mark;  // another program may have the same file and other arguments
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
