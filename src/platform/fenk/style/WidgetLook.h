#pragma once

class QAbstractItemView;
class QAction;
class QWidget;

namespace Fenk {

/// The kinds of buttons. A window has at most one Suggested button; Destructive is the filled button that
/// confirms a destructive action, Warning has only text in the danger colour; Quiet has no background unless
/// hovered.
enum class ButtonKind { Normal, Suggested, Warning, Destructive, Quiet };

/// Stored as a property of the widget, so any QAbstractButton can have a kind.
void setButtonKind(QWidget* button, ButtonKind kind);
ButtonKind buttonKind(const QWidget* button);

/// Red border for a field with invalid content.
void setAlertState(QWidget* field, bool alert);
bool hasAlertState(const QWidget* field);

/// Radius of the focus ring's inner edge, for controls with other corners than usual. A custom control has a
/// ring only if its radius is set.
void setRingRadius(QWidget* control, int radius);
int ringRadius(const QWidget* control);
bool hasRingRadius(const QWidget* control);

/// A frame and a focus ring like those of a text edit, which has them by itself.
void setTextAreaLook(QWidget* view);
bool hasTextAreaLook(const QWidget* view);

/// The look of a list at the side of a window: sunken background, no frame, rounded rows.
void setSidebarLook(QAbstractItemView* view);
bool hasSidebarLook(const QWidget* view);

/// Marks a destructive menu entry; it belongs last, after a separator.
void setDestructive(QAction* action);
bool isDestructive(const QAction* action);

}  // namespace Fenk
