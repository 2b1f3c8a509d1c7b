#pragma once

#include <QWidget>

namespace Fenk {
class Spinner;
}

/// Shown while the first page of a list loads: skeleton cards, and a spinner when it takes longer.
class LoadingWidget : public QWidget {
    Q_OBJECT
public:
    explicit LoadingWidget(QWidget* parent = nullptr);
    ~LoadingWidget() override;

    Fenk::Spinner* spinner() const { return m_spinner; }

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    Fenk::Spinner* m_spinner;
};
