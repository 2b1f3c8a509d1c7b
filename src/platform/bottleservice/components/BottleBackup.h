#pragma once

#include <QString>
#include <atomic>

/// The backup of a bottle during an installation: its "windows" directory and its registry, in a hidden
/// directory of the bottle, so that an installation that fails or is killed can be undone. A backup has the
/// id of its installation. bottle.yml has the id of the last installation that was completed
/// ("Last_Install"), which decides whether a backup that is found later is restored. Blocks; for worker
/// threads.
namespace BottleBackup {

enum class State {
    None,
    Unfinished,  ///< announced or being made; the bottle is unchanged
    Whole
};

State state(const QString& bottlePath);
QString idOf(const QString& bottlePath);
QString pathOf(const QString& bottlePath);

/// Makes launch scripts wait from now on: they look for the journal, which has no id yet. There must be no
/// backup. Returns an error text, empty on success.
QString announce(const QString& bottlePath);

/// Copies the files of an announced backup; nothing may run in the bottle. Returns an error text, empty on
/// success.
QString make(const QString& bottlePath, const QString& id, const std::atomic_bool& cancelled);

/// Restores the bottle; nothing may run in it. Its replaced files are then in the backup's place. Can be
/// repeated after a kill. Returns an error text, empty on success.
QString restore(const QString& bottlePath);

/// Makes the backup invalid; its files must still be removed. Returns an error text, empty on success.
QString dismiss(const QString& bottlePath);

}  // namespace BottleBackup
