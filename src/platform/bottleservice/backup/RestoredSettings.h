#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <functional>

#include "bottleservice/backup/BackupList.h"
#include "bottleservice/bottles/BottleYaml.h"

/// The settings of a restored bottle.
namespace RestoredSettings {

struct Place {
    QString name;         ///< of the bottle, now
    QString path;         ///< of the bottle, now
    QString home;         ///< of the user, now
    QString runner;       ///< that the bottle will run on
    QString templateKey;  ///< of that runner
};

/// A name like the wanted one that no bottle has: "name", "name (2)", ... Empty when a thousand are taken.
QString freeName(const QString& wanted, const std::function<bool(const QString&)>& isTaken);

/// A path of a program or of an icon on its new machine: in the bottle, or below the user's home, where the
/// old one was. Unix paths, and paths on the drive Z of Windows; other paths stay.
QString moved(const QString& path, const BackupList& list, const Place& place);

/// The settings at the new place, with nothing of the old ones but what a caller of the service could have
/// set. Programs get new ids when theirs are taken or are none; their icons' files, below `directory`, are
/// renamed with them. `variables` gets the names of the programs' variables that are not taken over, since
/// they could make native programs run something else.
BottleYaml adapted(const BottleYaml& old, const BackupList& list, const Place& place,
                   const QSet<QString>& takenIds, const QString& directory, QStringList* variables);

}  // namespace RestoredSettings
