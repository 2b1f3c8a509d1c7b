#include "shell/library/ProgramMenu.h"

#include <QRegularExpression>

#include "backend/BottleRecord.h"
#include "backend/DesktopUtils.h"
#include "core/base/WineNames.h"
#include "shell/associations/BottleAssociations.h"

namespace ProgramMenu {

namespace {

bool isFromStore(const QString& bottle) {
    static const QRegularExpression name("program-[0-9a-f]{8,}");
    return name.match(bottle).hasMatch();
}

}  // namespace

Facts Facts::of(const QString& bottle, const QString& programId, const QJsonObject& bottleRecord) {
    Facts facts;
    facts.bottle = bottle;
    facts.runner = BottleRecord::runner(bottleRecord);
    if (BottleRecord::hasPrograms(bottleRecord))
        facts.programCount = BottleRecord::programs(bottleRecord).size();
    facts.hasShortcut = DesktopUtils::hasDesktopShortcut(programId);
    facts.hasAssociations = !BottleAssociations::read(BottleRecord::path(bottleRecord)).isEmpty();
    return facts;
}

Layout layoutFor(const QString& bottle) {
    if (WineNames::isPublicBottle(bottle))
        return {{Action::EditDetails, Action::CreateDesktopIcon, Action::Feedback, Action::Remove}, {}, {}};
    return {{Action::EditDetails, Action::AdvancedDebugging},
            {Action::OpenInTerminal, Action::OpenFolder, Action::OpenDriveC, Action::FileAssociations,
             Action::RegistryEditor, Action::ImportRegistry, Action::InternetSettings, Action::QuitAllApps},
            {Action::Translator, Action::PackagedApps, Action::DumpManifest, Action::BackUp,
             Action::CreateDesktopIcon, Action::Feedback, Action::Remove}};
}

bool isShown(Action action, const Facts& facts) {
    switch (action) {
        case Action::CreateDesktopIcon:
            return !facts.hasShortcut;
        case Action::PackagedApps:
            return !facts.runner.isEmpty() && !WineNames::isProton(facts.runner);
        case Action::DumpManifest:
            return !isFromStore(facts.bottle);
        case Action::FileAssociations:
            return facts.hasAssociations;
        case Action::Translator:
            return !facts.emulators.installed.isEmpty();
        default:
            return true;
    }
}

}  // namespace ProgramMenu
