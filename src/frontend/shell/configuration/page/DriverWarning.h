#pragma once

#include <QObject>

#include "fenk/window/Dialog.h"

/// Tells that a 32-bit program needs graphics drivers that are missing, with a link to help.
class DriverWarning : public Fenk::Dialog {
    Q_OBJECT
public:
    explicit DriverWarning(QWidget* parent = nullptr);
};

/// Looks in the background whether the warning has to be shown, and shows it over the window. GUI thread.
class DriverCheck : public QObject {
    Q_OBJECT
public:
    explicit DriverCheck(QWidget* window);

    /// A newer check replaces the one that is under way. `programPath` is the program's path in its record.
    void check(const QString& bottlePath, const QString& programPath, const QString& runner);

private:
    void onDescribed(const QString& fileDescription);
    void warn();

    QWidget* m_window;
    int m_checks = 0;
};
