#pragma once

#include <QString>

class QWidget;

/// Bottle chores that have to do with starts of programs, and so can't live among the plain bottle utilities.
namespace BottleTasks {

/// Asks for a .reg file and imports it into the bottle.
void importRegistry(QWidget* parent, QString bottle);
/// Windows' own settings of the net.
void openInternetOptions(const QString& bottle);

/// Ends all programs of the bottle. None of them counts as a failed start.
void killWineServer(const QString& bottle);

}  // namespace BottleTasks
