#pragma once

struct Program;
class QWidget;

/// Asks before a program is taken out of the library, and does it. AppItemWidgetStateManager tells when that
/// has failed. Removals are done one after the other: a program that has become its bottle's last one since
/// the question was asked is not removed without asking again, now for the bottle.
namespace RemovalQuestion {

/// Returns at once. `withBottle`: it is the bottle's only program, so that the bottle goes with it.
void ask(const Program& program, bool withBottle, QWidget* over);

}  // namespace RemovalQuestion
