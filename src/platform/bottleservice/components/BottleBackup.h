#pragma once

#include <QString>
#include <atomic>

/// What a bottle was before something is installed into it: its "windows" directory and its registry, set
/// aside in the bottle under a hidden name, so that an installation that fails or is killed can be undone. A
/// backup bears the id of its installation; bottle.yml names the id of the last one that was completed
/// ("Last_Install"), and that decides what a backup that is found later means. For worker threads.
namespace BottleBackup {

enum class State {
    None,
    Unfinished,  ///< announced or being made; the bottle is as it was
    Whole
};

State state(const QString& bottlePath);
QString idOf(const QString& bottlePath);
QString pathOf(const QString& bottlePath);

/// From here on launch scripts wait: they look for the journal, which names no id yet. There must be no
/// backup. Empty, or a sentence.
QString announce(const QString& bottlePath);

/// Copies what was announced; nothing may run in the bottle. Empty, or a sentence.
QString make(const QString& bottlePath, const QString& id, const std::atomic_bool& cancelled);

/// Puts back what was set aside; nothing may run in the bottle. What was there lies in the backup's place
/// afterwards. Can be repeated after a kill. Empty, or a sentence.
QString restore(const QString& bottlePath);

/// From here on there is no backup; its files remain to be removed. Empty, or a sentence.
QString dismiss(const QString& bottlePath);

}  // namespace BottleBackup
