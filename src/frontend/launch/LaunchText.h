#pragma once

#include <QCoreApplication>
#include <QString>

/// The texts of a launch stand in one translation context, whichever class shows them.
struct LaunchText {
    Q_DECLARE_TR_FUNCTIONS(ExeFileExecutor)

public:
    /// How far the service is with the environment that a runner's first bottle is copied from.
    static QString environmentProgress(int percent) {
        return tr("The first run needs an environment, which takes about half a minute: %1%").arg(percent);
    }
};
