#pragma once

#include <QObject>
#include <QString>

class QWidget;

/// The bottle configuration as a launch sees it. Belongs to who made it; ends itself when it is closed.
class BottleConfigWindow : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    virtual void setLoading(bool loading) = 0;
    /// The program that is made of this file, as soon as the bottle has it.
    virtual void selectProgram(const QString& exePath) = 0;

Q_SIGNALS:
    void closed();
};

/// The windows that a launch opens and that live above it. The application hands in its own at start; without
/// them a launch does without.
class LaunchWindows {
public:
    enum class ConfigMode { Ordinary, Debugging };

    virtual ~LaunchWindows() = default;

    /// Whether there is such a window at all; buttons that lead to one that is not are hidden.
    virtual bool hasBottleConfig() const { return true; }
    virtual bool hasFeedback() const { return true; }

    /// Shows the configuration of a bottle above `over`. Null when that is not possible; the user has been
    /// told why.
    virtual BottleConfigWindow* openBottleConfig(const QString& bottle, ConfigMode mode, QWidget* over) = 0;

    /// Asks for feedback on a program and returns when that has been given or not: the rating, 0 for none.
    virtual int askFeedback(const QString& bottle, const QString& appName, const QString& version,
                            QWidget* over) = 0;

    static LaunchWindows* instance();
    static void setInstance(LaunchWindows* windows);  ///< not taken over; null takes it away
};
