#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QVector>

class QWidget;

namespace Fenk {

class Veil;

/// Ties a dialog to the window that it belongs to. While it is shown over a visible window, that window is
/// dimmed and the dialog has a shadow; it comes up in the window's middle and keeps its place in it when the
/// window is moved or resized. When it goes, in whatever way, the focus goes back to the control that had it,
/// or to what that control lay in. Owned by its dialog, which may be one of Qt's; those of ours have one.
class DialogAnchor : public QObject {
    Q_OBJECT
public:
    explicit DialogAnchor(QWidget* dialog);
    ~DialogAnchor() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void take();
    void release();
    void follow();
    void returnFocus() const;

    QWidget* m_dialog;
    QPointer<QWidget> m_window;               ///< null while the dialog lies over none
    QPointer<Veil> m_veil;                    ///< of that window
    QVector<QPointer<QWidget>> m_focusChain;  ///< what had the focus, then what that lay in
    QPoint m_middle;                          ///< of the window, where it was last
};

}  // namespace Fenk
