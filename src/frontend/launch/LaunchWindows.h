#pragma once

#include <QObject>
#include <functional>

#include "backend/ProgramRef.h"

class QWidget;

/// The bottle configuration as a launch sees it. Whoever opened it for the launch owns it; it deletes itself
/// after it was closed. GUI thread.
class BottleConfigWindow : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    virtual void setLoading(bool loading) = 0;
    /// Selects the program that is made of this file, as soon as the bottle has it.
    virtual void selectProgram(const QString& exePath) = 0;

Q_SIGNALS:
    void closed();
};

/// The windows that a room opens although they belong to a room above it. The application sets the
/// openers at start and clears them at its end. A button or menu entry whose opener is not set is hidden.
/// GUI thread. The program's id is empty for a file that is not stored yet; `over` may be null.
struct LaunchWindows {
    enum class ConfigMode { Ordinary, Debugging };
    using ForProgram = std::function<void(const ProgramRef& program, QWidget* over)>;

    /// Opens the configuration of the program's bottle. Returns null when that is not possible; the user has
    /// then been told why.
    std::function<BottleConfigWindow*(const ProgramRef& program, ConfigMode mode, QWidget* over)>
        configuration;
    /// Asks for feedback on a program, or on this application when the reference is empty. Runs an event loop
    /// until the user is done. Returns the rating, 0 for none.
    std::function<int(const ProgramRef& program, const QString& appName, const QString& version,
                      QWidget* over)>
        feedback;
    ForProgram packaging;
    ForProgram manifestExport;
    /// Shows the launch banner of a program whose last start failed: it offers to install the components, or
    /// starts the program and watches it when there are none.
    std::function<void(const ProgramRef& program, const QStringList& components)> repair;

    /// Makes the Proton runners ready before the first one is chosen, with a window that shows it. Calls
    /// `then` in any case, at once or when the set-up has ended, unless `context` is destroyed first.
    std::function<void(QObject* context, const std::function<void()>& then)> prepareProton;

    static LaunchWindows& instance();
};
