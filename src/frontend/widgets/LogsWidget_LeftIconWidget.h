#pragma once

#include <QWidget>

class LogsWidget;

/// The margin of a LogsWidget: markers of the error lines, and the time of each line.
class LogsWidget_LeftIconWidget : public QWidget {
    Q_OBJECT
public:
    explicit LogsWidget_LeftIconWidget(LogsWidget* logs);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    LogsWidget* m_logs;
};
