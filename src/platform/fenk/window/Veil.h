#pragma once

#include <QVector>
#include <QWidget>

namespace Fenk {

/// Dims a window while dialogs of ours lie over it, and draws their shadows. A child of that window, above
/// all else in it and as large as it, so that it needs no compositor. Takes no clicks: whether the window can
/// be used meanwhile is the dialogs' matter. Deletes itself with its last dialog.
class Veil : public QWidget {
    Q_OBJECT
public:
    /// The veil of the window, made if it has none.
    static Veil* of(QWidget* window);

    void add(QWidget* dialog);
    void remove(QWidget* dialog);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    explicit Veil(QWidget* window);

    QVector<QWidget*> m_dialogs;
};

}  // namespace Fenk
