#pragma once

#include <QHash>
#include <QObject>
#include <QQueue>
#include <optional>

#include "backend/BottleUtils.h"
#include "fenk/system/Singleton.h"
#include "programs/Program.h"

/// What a user can change of a program.
struct ProgramFace {
    QString name;
    QString icon;
    bool operator==(const ProgramFace& other) const { return name == other.name && icon == other.icon; }
};

/// Carries changes to the bottles, those of one program one after the other, whatever becomes of the window
/// that they were made in. GUI thread only.
class ProgramSaver : public QObject, public Fenk::Singleton<ProgramSaver> {
    Q_OBJECT
    friend class Fenk::Singleton<ProgramSaver>;

public:
    struct Save {
        int number = 0;
        ProgramFace face;
        BottleUtils::Change change = BottleUtils::Change::Refused;
    };

    /// Returns the save's number.
    int save(const ProgramRef& ref, const ProgramFace& face);
    /// What the program will be like once all is saved; nothing when no save is under way.
    std::optional<ProgramFace> pending(const ProgramRef& ref) const;

Q_SIGNALS:
    void saved(const ProgramRef& ref, const ProgramSaver::Save& save);

private:
    ProgramSaver() = default;
    void saveNext(const ProgramRef& ref);

    QHash<ProgramRef, QQueue<Save>> m_waiting;  ///< the first of each is under way
    int m_saves = 0;
};
