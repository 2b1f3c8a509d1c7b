#pragma once

#include <QString>

class QWidget;

/// Bottle chores that start a Windows program, and so can't live among the plain bottle utilities.
namespace BottleTasks {

/// Asks for a .reg file and imports it into the bottle.
void importRegistry(QWidget* parent, const QString& bottle);

}  // namespace BottleTasks
