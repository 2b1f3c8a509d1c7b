#pragma once

#include <QVector>
#include <QWidget>

namespace Fenk {

/// Dims a window while dialogs are over it, and draws their shadows. A child of the window, as large as it
/// and above everything else, so no compositor is needed. Ignores clicks: the dialogs decide whether the
/// window can be used meanwhile. Deletes itself with its last dialog.
class Veil : public QWidget {
    Q_OBJECT
public:
    /// Returns the veil of the window; creates it if there is none.
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
