#pragma once

class QMenu;

namespace Fenk {

/// Appends the entries that every program's menu ends with: the choice of the theme, About and Exit. The last
/// two ask the Application; without one they are left out.
void appendStandardActions(QMenu* menu);

}  // namespace Fenk
