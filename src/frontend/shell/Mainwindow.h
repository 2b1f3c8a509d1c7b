#pragma once

#include "fenk/MainWindow.h"

class QStackedWidget;

/// The library window. Created by the application when it is first wanted; a launch of a file never creates
/// it.
class Mainwindow : public Fenk::MainWindow {
    Q_OBJECT
public:
    Mainwindow();

Q_SIGNALS:
    /// The user chose a file to run.
    void openRequested(const QString& path);
};
