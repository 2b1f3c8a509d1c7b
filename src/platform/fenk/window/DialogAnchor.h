#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QVector>

class QWidget;

namespace Fenk {

class Veil;

/// Attaches a dialog to its parent window. While the dialog is shown over a visible window, the window is
/// dimmed and the dialog has a shadow; the dialog opens in the middle of the window and keeps its relative
/// position when the window moves or resizes. When it closes, the focus returns to the control that had it,
/// or to an ancestor. Owned by its dialog, which may be a plain QDialog; AbstractDialog has one already.
class DialogAnchor : public QObject {
    Q_OBJECT
public:
    explicit DialogAnchor(QWidget* dialog);
    ~DialogAnchor() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void attach();
    void detach();
    void moveWithWindow();
    void restoreFocus() const;

    QWidget* m_dialog;
    QPointer<QWidget> m_window;               ///< null while the dialog is over no window
    QPointer<Veil> m_veil;                    ///< of m_window
    QVector<QPointer<QWidget>> m_focusChain;  ///< the focused control and its ancestors
    QPoint m_middle;                          ///< last middle of the window
};

}  // namespace Fenk
