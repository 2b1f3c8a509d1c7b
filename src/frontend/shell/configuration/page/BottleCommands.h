#pragma once

#include <QVector>
#include <functional>

#include "backend/ProgramRef.h"

/// The tools of a bottle that the configuration window offers.
struct BottleCommand {
    const char* label;  ///< source of a translation in the context "BottleCommands"
    void (*run)(const ProgramRef& program);
    bool needsProgram = false;

    QString text() const;
};

namespace BottleCommands {

/// In the order of display.
const QVector<BottleCommand>& all();

/// A shell in a terminal with the bottle's environment.
void openTerminal(const QString& bottle);

}  // namespace BottleCommands
