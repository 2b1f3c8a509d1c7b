#pragma once

/// What "Repair" does after a failed launch. ExeFileExecutor::applyFix carries it out.
enum class RepairAction {
    None,
    InstallComponents,
    InstallFonts,
    SwitchToStaging,     ///< switch the bottle to the staging runner
    InstallWow64Runner,  ///< switch the bottle to a runner that needs no 32-bit packages
    RenewBottle,         ///< restore Wine's files in the bottle from the template
    LaunchAgain,
};

/// Repairs other than components and fonts, which the log asks for, and the staging runner, which is the last
/// resort.
constexpr bool isOtherRepair(RepairAction action) {
    return action == RepairAction::InstallWow64Runner || action == RepairAction::RenewBottle ||
           action == RepairAction::LaunchAgain;
}
