#pragma once

#include <QWidget>

class BottleDependencies;
class QProgressBar;
class QPushButton;

namespace Fenk {
class Label;
class Spinner;
}  // namespace Fenk

/// What is being installed into the bottle, how far it is and how many components wait, with a button that
/// cancels the first of them.
class InstallingTips : public QWidget {
    Q_OBJECT
public:
    explicit InstallingTips(BottleDependencies* dependencies, QWidget* parent = nullptr);

private:
    void refresh();

    BottleDependencies* m_dependencies;
    Fenk::Spinner* m_spinner;
    Fenk::Label* m_tips;
    Fenk::Label* m_detail;
    QProgressBar* m_progress;
    QPushButton* m_cancel;
};
