#pragma once

#include <QStringList>

#include "fenk/window/Dialog.h"

/// Asks whether the programs that run in a bottle may be closed, so that a repair can change the bottle.
/// Modal over the banner, shown without blocking, deleted when answered. Escape and the close button mean no.
class RunningProgramsQuestion : public Fenk::Dialog {
    Q_OBJECT
public:
    /// `appName` is the program that is repaired; `programs` are the names of those that run.
    RunningProgramsQuestion(const QString& appName, const QStringList& programs, QWidget* banner);

Q_SIGNALS:
    void answered(bool close);  ///< once, or never if the dialog is destroyed before
};
