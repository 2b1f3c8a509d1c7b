#pragma once

#include <QString>

struct OrphanedBottle;
struct Program;
class QWidget;

/// What becomes of a bottle whose package has been removed: the user removes it, which is asked once more, or
/// keeps it as an ordinary one.
namespace OrphanQuestion {

/// Why there is something to decide; for the question and as a tool tip.
QString textOf(const Program& program, const OrphanedBottle& bottle);

/// Opens a dialog over `over` and returns.
void ask(const Program& program, const OrphanedBottle& bottle, QWidget* over);

}  // namespace OrphanQuestion
