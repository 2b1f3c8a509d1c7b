#pragma once

#include <QString>
#include <functional>

class QObject;
class QWidget;

/// Bottle chores that have to do with starts of programs, and so can't live among the plain bottle utilities.
namespace BottleTasks {

/// Asks for a .reg file and imports it into the bottle. Returns at once; the question goes with its parent.
void importRegistry(QWidget* parent, QString bottle);
/// Windows' own settings of the net.
void openInternetOptions(const QString& bottle);

/// Ends all programs of the bottle. None of them counts as a failed start. With a context, ended is called
/// when the service has answered.
void killWineServer(const QString& bottle, QObject* context = nullptr,
                    const std::function<void()>& ended = {});

}  // namespace BottleTasks
