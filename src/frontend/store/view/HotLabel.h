#pragma once

#include <QIcon>
#include <QWidget>

/// The mark of a recommended application, 22 by 11, in the picture of the present theme.
class HotLabel : public QWidget {
    Q_OBJECT
public:
    explicit HotLabel(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QIcon m_picture;
};
