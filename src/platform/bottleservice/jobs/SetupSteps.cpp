#include "bottleservice/jobs/SetupSteps.h"

using Kind = SetupStep::Kind;

QVector<SetupStep> SetupSteps::of(const Manifest& manifest) {
    const Manifest::Bottle& bottle = manifest.bottle;
    QVector<SetupStep> steps{{Kind::Create, 0, "Creating the bottle"}};
    if (!bottle.dxvk.isEmpty() || !bottle.vkd3d.isEmpty())
        steps += SetupStep{Kind::Layers, 0, "Installing graphics components"};
    for (int i = 0; i < bottle.dependencies.size(); ++i)
        steps += SetupStep{Kind::Dependency, i, QString("Installing %1").arg(bottle.dependencies[i])};
    steps += SetupStep{Kind::Settings, 0, "Applying settings"};
    if (!bottle.files.isEmpty())
        steps += SetupStep{Kind::Files, 0, "Writing files"};
    for (int i = 0; i < bottle.commands.size(); ++i)
        steps += SetupStep{Kind::Command, i, "Running commands"};
    return steps += SetupStep{Kind::Finish, 0, "Finishing"};
}
