#pragma once

#include <QVector>
#include <functional>

#include "backend/ProgramRef.h"

class BottlePrograms;

/// The tools of a bottle that the configuration window offers.
struct BottleCommand {
    const char* label;  ///< source of a translation in the context "BottleCommands"
    /// Takes the reason when the command could not be run, for the user.
    using Failed = std::function<void(const QString& errorText)>;
    void (*run)(const ProgramRef& program, QObject* context, const Failed& failed);
    bool needsProgram = false;
    bool isTerminal = false;

    QString text() const;
    /// Runs it for the bottle and this program of it; a failure goes to BottlePrograms::failed().
    void start(BottlePrograms* programs, const ProgramRef& program) const;
};

namespace BottleCommands {

/// In the order of display.
const QVector<BottleCommand>& all();

/// A shell in a terminal with the bottle's environment.
void openTerminal(const QString& bottle, QObject* context = nullptr,
                  const BottleCommand::Failed& failed = {});

}  // namespace BottleCommands
