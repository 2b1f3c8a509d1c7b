#pragma once

#include <QWidget>

/// Shown by the library while there is no program: says how to add one and has buttons for that
/// and for restoring a backup.
class AppListEmptyTipsWidget : public QWidget {
    Q_OBJECT
public:
    explicit AppListEmptyTipsWidget(QWidget* parent = nullptr);

Q_SIGNALS:
    void addRequested();
    void restoreRequested();
};
