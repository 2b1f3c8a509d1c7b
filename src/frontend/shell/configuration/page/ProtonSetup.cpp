#include "shell/configuration/page/ProtonSetup.h"

#include "launch/LaunchWindows.h"

void ProtonSetup::prepare(QObject* context, const std::function<void()>& then) {
    if (const auto prepare = LaunchWindows::instance().prepareProton)
        prepare(context, then);
    else
        then();
}
