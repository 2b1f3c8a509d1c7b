#pragma once

#include <QWidget>

/// What the library shows while no program is known: one sentence and the one thing to do, choosing a Windows
/// program, by button or by dropping a file on the window.
class AppListEmptyTipsWidget : public QWidget {
    Q_OBJECT
public:
    explicit AppListEmptyTipsWidget(QWidget* parent = nullptr);

Q_SIGNALS:
    void addRequested();
};
