#pragma once

#include <QHash>
#include <QJsonObject>
#include <QStringList>
#include <QVector>
#include <vector>

#include "bottleservice/wine/LaunchRecords.h"
#include "bottleservice/wine/Processes.h"

/// Decides which of a bottle's programs a process belongs to: the program whose id it carries, the one whose
/// file it was started from, and the one whose executable it runs. Reads the file system to compare paths and
/// remembers the results until forgetFiles(), since one check compares each path many times. For the main
/// thread.
class RunOwners {
public:
    /// `records` are the programs by id, as bottle.yml has them.
    RunOwners(const QString& bottlePath, const QJsonObject& records);

    QJsonObject records() const { return m_records; }
    /// Before each check: a link may lead elsewhere by then, and a file may be gone.
    void forgetFiles() { m_files.clear(); }

    /// The ids of the programs; more than one when a program has started another that is entered too. Empty
    /// for Wine's own helpers.
    QStringList of(const Processes::Entry& process) const;
    /// The id of the program that a launch script has started; empty for one that is not entered.
    QString of(const LaunchRecord::Claim& claim) const;

    /// The processes of one program, among those of the bottle. Works also for an id whose record was
    /// removed.
    std::vector<Processes::Entry> processesOf(const QString& id,
                                              const std::vector<Processes::Entry>& processes) const;

private:
    struct Program {
        QString id;
        QString path;  ///< as the record has it
    };
    QString realFile(const QString& path) const;
    QString ownerOf(const QString& path) const;

    QString m_bottlePath;
    QJsonObject m_records;
    QVector<Program> m_programs;              ///< those without arguments first
    mutable QHash<QString, QString> m_files;  ///< path to the real file, empty where there is none
};
