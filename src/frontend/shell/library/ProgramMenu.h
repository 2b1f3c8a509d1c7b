#pragma once

#include <QJsonObject>
#include <QString>
#include <QVector>
#include <optional>

#include "backend/EmulatorsInfo.h"

/// What the menu of a program holds, as rules without a widget.
namespace ProgramMenu {

enum class Action {
    EditDetails,
    AdvancedDebugging,
    OpenInTerminal,
    OpenFolder,
    OpenDriveC,
    FileAssociations,
    RegistryEditor,
    ImportRegistry,
    InternetSettings,
    QuitAllApps,
    Translator,
    PackagedApps,
    DumpManifest,
    CreateDesktopIcon,
    Feedback,
    Remove
};
constexpr int ActionCount = int(Action::Remove) + 1;

/// What is found out at each opening.
struct Facts {
    QString bottle;
    QString runner;
    std::optional<int> programCount;  ///< in the bottle; nothing while that is not known
    bool hasShortcut = false;
    bool hasAssociations = false;
    EmulatorsInfo emulators;

    /// From the bottle's record and the files in it and on the desktop.
    static Facts of(const QString& bottle, const QString& programId, const QJsonObject& bottleRecord);
};

struct Layout {
    QVector<Action> before;      ///< the sub-menu of tools
    QVector<Action> quickTools;  ///< empty: no sub-menu
    QVector<Action> after;
};
/// A shared bottle is not for its users to change.
Layout layoutFor(const QString& bottle);

bool isShown(Action action, const Facts& facts);
/// Removing a bottle's only program takes the bottle with it.
inline bool removesBottle(const Facts& facts) {
    return facts.programCount == 1;
}

}  // namespace ProgramMenu
