#pragma once

struct Program;
class QWidget;

/// Asks the user before a program is removed from the library, and removes it. Failures are reported by
/// AppItemWidgetStateManager::failed. Removals run one after the other. If the program has become the last
/// one of its bottle since the question was asked, nothing is removed and the question is asked again for the
/// bottle.
namespace RemovalQuestion {

/// Opens a dialog over `over` and returns. `withBottle`: the program is the only one of its bottle, which is
/// deleted with it.
void ask(const Program& program, bool withBottle, QWidget* over);
/// The same for the program's bottle with all programs in it.
void askForBottle(const Program& program, QWidget* over);

}  // namespace RemovalQuestion
