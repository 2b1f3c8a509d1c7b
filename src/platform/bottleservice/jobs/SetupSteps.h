#pragma once

#include <QString>
#include <QVector>

#include "manifest/Manifest.h"

/// One step of the set-up of a bottle as its progress is told. `index` is that of the dependency or command.
struct SetupStep {
    enum class Kind { Create, Layers, Dependency, Settings, Files, Command, Finish };

    Kind kind;
    int index;
    QString title;  ///< English
};

namespace SetupSteps {

/// The steps that a manifest needs, in the order in which they are carried out.
QVector<SetupStep> of(const Manifest& manifest);

}  // namespace SetupSteps
