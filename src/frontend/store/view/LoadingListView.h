#pragma once

#include <QListView>

namespace Fenk {
class Spinner;
}

/// A list that is loaded page by page. Below it lies a strip of 64 pixels while the next page is on its way.
class LoadingListView : public QListView {
    Q_OBJECT
public:
    explicit LoadingListView(QWidget* parent = nullptr);

    void setBottomLoading(bool loading);
    bool isBottomLoading() const { return m_isLoading; }

Q_SIGNALS:
    /// The list was scrolled to its end, and setBottomLoading() is not on.
    void reachedBottom();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void placeStrip();

    QWidget* m_strip;
    Fenk::Spinner* m_spinner;
    int m_lastValue = 0;  ///< of the scroll bar
    bool m_isLoading = false;
};
