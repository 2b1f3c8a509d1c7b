#include "shell/portable/PortableCandidates.h"

#include <QDebug>
#include <QDirIterator>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QSet>
#include <QTemporaryDir>
#include <QUuid>
#include <algorithm>

#include "backend/ProgramRecord.h"
#include "backend/WindowsPath.h"
#include "core/base/Paths.h"
#include "core/base/ToolProcess.h"
#include "launch/icons/IconFile.h"
#include "launch/inspection/ExeFileInfo.h"
#include "launch/inspection/ProgramKind.h"
#include "shell/portable/ProgramLikelihood.h"

namespace {

constexpr quint16 Console = 3;  // subsystem

struct Candidate {
    QString file;
    QString path;   ///< of Windows
    QString place;  ///< the same from the folder on
    ProgramFacts facts;
    QList<QImage> icon;
    int likelihood = 0;
};

/// Not std::sort: equal ones keep the order of their paths.
void sort(QVector<Candidate>* candidates) {
    for (Candidate& candidate : *candidates)
        candidate.likelihood = ProgramLikelihood::of(candidate.facts);
    std::stable_sort(
        candidates->begin(), candidates->end(),
        [](const Candidate& one, const Candidate& other) { return one.likelihood > other.likelihood; });
}

QVector<Candidate> found(const QString& directory, const QString& folder, const std::atomic_bool& stop) {
    QVector<Candidate> candidates;
    const ProgramHost host = ProgramHost::thisMachine();
    QDirIterator walk(directory, {"*.exe", "*.bat"}, QDir::Files | QDir::NoSymLinks | QDir::Hidden,
                      QDirIterator::Subdirectories);
    while (!stop && walk.hasNext() && candidates.size() < PortableCandidates::MostFiles) {
        Candidate candidate;
        candidate.file = walk.next();
        const QString relative = candidate.file.mid(directory.size() + 1);
        const ProgramHeader header = ProgramHeader::read(candidate.file);
        const bool isBatch = relative.endsWith(QLatin1String(".bat"), Qt::CaseInsensitive);
        if (!isBatch && !header.isProgram())
            continue;
        candidate.place = QString(relative).replace('/', '\\');
        candidate.path = folder + '\\' + candidate.place;
        ProgramFacts& facts = candidate.facts;
        facts.fileName = walk.fileName();
        facts.folderName = QFileInfo(directory).fileName();
        facts.depth = relative.count('/');
        facts.bytes = walk.fileInfo().size();
        facts.is32BitOnly = header.is32BitOnly();
        facts.isGraphical = !isBatch && header.subsystem != Console;
        facts.runsHere = programKind(header, walk.fileInfo().suffix(), host) == ProgramKind::Runnable;
        candidates += candidate;
    }
    std::sort(candidates.begin(), candidates.end(), [](const Candidate& one, const Candidate& other) {
        return one.path.compare(other.path, Qt::CaseInsensitive) < 0;
    });
    return candidates;
}

void examine(Candidate* candidate, const QString& directory) {
    const QJsonObject block = peVersionInfo(candidate->file);
    for (const char* key : {"ProductName", "FileDescription"}) {
        const QString name = block.value(QLatin1String(key)).toString().simplified();
        if (!name.isEmpty() && !candidate->facts.names.contains(name))
            candidate->facts.names += name;
    }
    const QString icon = QUuid::createUuid().toString(QUuid::WithoutBraces) + ".png";
    if (ToolProcess::runQuietly(Paths::iconExtractorScript(), {candidate->file, icon, directory}).succeeded())
        candidate->icon = IconFile::images(directory + '/' + icon);
    candidate->facts.hasIcon = !candidate->icon.isEmpty();
}

/// Without a name when the version block was not read: whoever shows it reads it then.
QJsonObject recordOf(const Candidate& candidate, const QJsonObject& entries, bool isExamined,
                     QSet<QString>* takenNames) {
    QString name;
    if (isExamined) {
        QStringList names = candidate.facts.names;
        names += QFileInfo(candidate.file).completeBaseName();
        // Several programs of one product often share its name.
        name = names.first();
        for (int i = 1; takenNames->contains(name) && i < names.size(); ++i)
            name = names[i];
        takenNames->insert(name);
    }
    QString id = QUuid::createUuid().toString(QUuid::WithoutBraces);
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        const QString path = ProgramRecord::path(entry->toObject());
        if (path.compare(candidate.path, Qt::CaseInsensitive) == 0)
            id = entry.key();
    }
    return ProgramRecord::minimal(id, name, candidate.path);
}

}  // namespace

QVector<Executable> PortableCandidates::in(const Place& place, const QJsonObject& entries,
                                           const std::atomic_bool& stop) {
    const QString directory = WindowsPath::toUnix(place.bottlePath, place.folder);
    QVector<Candidate> candidates = found(directory, place.folder, stop);
    sort(&candidates);
    candidates.resize(std::min(candidates.size(), MostOffered));
    const QTemporaryDir icons;
    QSet<QString> examined;
    for (int i = 0; i < std::min(candidates.size(), MostExamined) && !stop; ++i) {
        examine(&candidates[i], icons.path());
        examined.insert(candidates[i].path);
    }
    sort(&candidates);
    QJsonArray records;
    QSet<QString> names;
    QHash<QString, Candidate> byPath;
    for (const Candidate& candidate : qAsConst(candidates)) {
        qInfo().noquote() << "found" << candidate.path << candidate.likelihood;
        records += recordOf(candidate, entries, examined.contains(candidate.path), &names);
        byPath.insert(candidate.path, candidate);
    }
    for (const QJsonValue& entry : entries)
        records += entry;
    QVector<Executable> offered = ExecutableList::of(place.bottlePath, records);
    for (Executable& executable : offered) {
        const Candidate candidate = byPath.value(executable.path);
        executable.isEntered = false;  // the bottle is new, and its entries are the service's guess
        executable.place = candidate.place;
        executable.images = candidate.icon;
    }
    return offered;
}
