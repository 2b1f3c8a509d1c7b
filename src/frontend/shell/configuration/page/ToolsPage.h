#pragma once

#include <QWidget>

class BottlePrograms;

/// The page with the tools of the bottle and of its current program.
class ToolsPage : public QWidget {
    Q_OBJECT
public:
    explicit ToolsPage(BottlePrograms* programs, QWidget* parent = nullptr);

Q_SIGNALS:
    void importRequested();
};
