#pragma once

#include <QSplitter>

/// The handle of a CustomSPitter: a thin line with a grip, wider for the mouse. Arrow keys move it, too.
class CustomSplitterHandle : public QSplitterHandle {
    Q_OBJECT
public:
    CustomSplitterHandle(Qt::Orientation orientation, QSplitter* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

/// The splitter between the log and the hints, and between the pages and both.
class CustomSPitter : public QSplitter {
    Q_OBJECT
public:
    explicit CustomSPitter(Qt::Orientation orientation, QWidget* parent = nullptr);

protected:
    QSplitterHandle* createHandle() override;
};
