#pragma once

#include <QJsonObject>
#include <QStringList>
#include <QVector>
#include <vector>

#include "bottleservice/wine/LaunchRecords.h"
#include "bottleservice/wine/Processes.h"

/// Which of a bottle's programs a process belongs to: the program whose mark it carries, the one whose file
/// it was started from, and the one whose executable it runs itself. Reads the file system to compare paths.
class RunOwners {
public:
    /// records: by id, as bottle.yml has them.
    RunOwners(const QString& bottlePath, const QJsonObject& records);

    /// Ids; more than one when a program has started another that is entered too. Wine's own helpers belong
    /// to none.
    QStringList of(const Processes::Entry& process) const;
    /// The program that a launch script sees to; empty for one that is not entered.
    QString of(const LaunchRecord::Claim& claim) const;

    /// Of the bottle's processes those of one program, also of one whose record is gone.
    std::vector<Processes::Entry> processesOf(const QString& id,
                                              const std::vector<Processes::Entry>& processes) const;

private:
    struct Program {
        QString id;
        QString file;
    };
    QString realFile(const QString& path) const;
    QString ownerOf(const QString& path) const;

    QString m_bottlePath;
    QVector<Program> m_programs;  ///< those without arguments first
};
