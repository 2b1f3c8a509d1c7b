#pragma once

class QMenu;

namespace Fenk {

/// Appends the standard entries: theme, About and Exit. The last two call Application and are omitted without
/// one.
void appendStandardActions(QMenu* menu);

/// Selects the first entry of a menu that was opened by key, so the arrow keys continue from there.
void chooseFirstEntry(QMenu* menu);

}  // namespace Fenk
