#pragma once

#include <QHash>
#include <QObject>
#include <QQueue>

#include "backend/BottleUtils.h"
#include "fenk/Singleton.h"
#include "shell/library/Program.h"

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
    void save(const ProgramRef& ref, const ProgramFace& face);

Q_SIGNALS:
    /// `last`: no other change of the program waits.
    void saved(const ProgramRef& ref, const ProgramFace& face, BottleUtils::Change change, bool last);

private:
    ProgramSaver() = default;
    void saveNext(const ProgramRef& ref);

    QHash<ProgramRef, QQueue<ProgramFace>> m_waiting;  ///< the first of each is under way
};
