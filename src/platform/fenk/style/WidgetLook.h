#pragma once

class QAbstractItemView;
class QAction;
class QWidget;

namespace Fenk {

/// How a button asks for attention. A window has at most one Suggested button; Destructive is the filled form
/// for the question that confirms, Warning the danger-coloured word anywhere else; Quiet has no ground until
/// the pointer is over it.
enum class ButtonKind { Normal, Suggested, Warning, Destructive, Quiet };

/// Kept as a property of the widget, so that any QAbstractButton can have a kind.
void setButtonKind(QWidget* button, ButtonKind kind);
ButtonKind buttonKind(const QWidget* button);

/// Red border for a field whose content is not accepted.
void setAlertState(QWidget* field, bool alert);
bool hasAlertState(const QWidget* field);

/// Radius of the focus ring's inner edge, for controls that are not a box with the usual corners. A control
/// that is none of Qt's own kinds has the ring only if it has a radius.
void setRingRadius(QWidget* control, int radius);
int ringRadius(const QWidget* control);
bool hasRingRadius(const QWidget* control);

/// A list that stands at a window's side: on the sunken ground, without a frame, its rows rounded.
void setSidebarLook(QAbstractItemView* view);
bool hasSidebarLook(const QWidget* view);

/// A menu entry that loses something; belongs last, behind a separator.
void setDestructive(QAction* action);
bool isDestructive(const QAction* action);

}  // namespace Fenk
