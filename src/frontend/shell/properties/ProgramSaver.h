#pragma once

#include <QHash>
#include <QObject>
#include <QQueue>
#include <optional>

#include "backend/BottleUtils.h"
#include "fenk/system/Singleton.h"
#include "programs/Program.h"

/// What a user can change of a program.
struct NameAndIcon {
    QString name;
    QString icon;
    bool operator==(const NameAndIcon& other) const { return name == other.name && icon == other.icon; }
};

/// Saves changes of programs in their bottles, those of one program one after the other, also after their
/// window was closed; the process does not end before. One for the process; GUI thread only; waits for
/// nothing there.
class ProgramSaver : public QObject, public Fenk::Singleton<ProgramSaver> {
    Q_OBJECT
    friend class Fenk::Singleton<ProgramSaver>;

public:
    struct Save {
        int number = 0;
        NameAndIcon values;
        BottleUtils::Change change = BottleUtils::Change::Refused;
    };

    /// Returns the save's number.
    int save(const ProgramRef& ref, const NameAndIcon& values);
    /// The values once all is saved; nothing if no save is queued or running.
    std::optional<NameAndIcon> pending(const ProgramRef& ref) const;

Q_SIGNALS:
    /// `save.change` says how it ended.
    void saved(const ProgramRef& ref, const ProgramSaver::Save& save);

private:
    ProgramSaver() = default;
    void saveNext(const ProgramRef& ref);

    QHash<ProgramRef, QQueue<Save>> m_queues;  ///< the first of each is running
    int m_saves = 0;
};
