#pragma once

class QMenu;

namespace Fenk {

/// Appends the entries that every program's menu ends with: the choice of the theme, About and Exit. The last
/// two ask the Application; without one they are left out.
void appendStandardActions(QMenu* menu);

/// For a menu that was opened by key: the arrow keys go on from its first entry.
void chooseFirstEntry(QMenu* menu);

}  // namespace Fenk
