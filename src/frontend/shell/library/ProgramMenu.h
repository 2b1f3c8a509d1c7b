#pragma once

#include <QJsonObject>
#include <QString>
#include <QVector>
#include <optional>

#include "backend/EmulatorsInfo.h"

/// The rules of a program's option menu: which entries it has and which of them are shown. No widgets.
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
    BackUp,
    CreateDesktopIcon,
    Feedback,
    Remove
};
constexpr int ActionCount = int(Action::Remove) + 1;

/// What the rules depend on; collected at each opening.
struct Facts {
    QString bottle;
    QString runner;
    std::optional<int> programCount;  ///< in the bottle; nothing if not known
    bool hasShortcut = false;
    bool hasAssociations = false;
    EmulatorsInfo emulators;

    /// Reads the bottle's record, its list of associations and the desktop directory; `emulators` stays
    /// empty.
    static Facts of(const QString& bottle, const QString& programId, const QJsonObject& bottleRecord);
};

struct Layout {
    QVector<Action> before;      ///< above the sub-menu
    QVector<Action> quickTools;  ///< of the sub-menu; empty: there is none
    QVector<Action> after;       ///< below the sub-menu
};
/// A shared bottle has no tools that would change it.
Layout layoutFor(const QString& bottle);

bool isShown(Action action, const Facts& facts);
/// Whether removing the program deletes its bottle, too: it is the only one there.
inline bool removesBottle(const Facts& facts) {
    return facts.programCount == 1;
}

}  // namespace ProgramMenu
