#pragma once

/// What "Repair" does about a failed launch. ExeFileExecutor::applyFix carries it out.
enum class RepairAction {
    None,
    InstallComponents,
    InstallFonts,
    SwitchToStaging,     ///< of the bottle's runner
    InstallWow64Runner,  ///< a runner that needs no 32-bit packages; the bottle is switched to it
    RenewBottle,         ///< Wine's own files of the bottle, from the template
    LaunchAgain,
};

/// Neither components and fonts, which the log asks for, nor the staging runner, which is the last resort.
constexpr bool isOtherRepair(RepairAction action) {
    return action == RepairAction::InstallWow64Runner || action == RepairAction::RenewBottle ||
           action == RepairAction::LaunchAgain;
}
