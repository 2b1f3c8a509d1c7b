#include "fenk/style/WidgetLook.h"

#include <QAbstractItemView>
#include <QAction>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QVariant>
#include <QWidget>

#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

namespace Fenk {

namespace {
const char KindProperty[] = "fenkButtonKind";
const char AlertProperty[] = "fenkAlert";
const char SidebarProperty[] = "fenkSidebar";
const char DestructiveProperty[] = "fenkDestructive";
const char TextAreaProperty[] = "fenkTextArea";
const char RingProperty[] = "fenkRingRadius";
}  // namespace

void setButtonKind(QWidget* button, ButtonKind kind) {
    button->setProperty(KindProperty, static_cast<int>(kind));
    button->update();
}

ButtonKind buttonKind(const QWidget* button) {
    return button ? static_cast<ButtonKind>(button->property(KindProperty).toInt()) : ButtonKind::Normal;
}

void setAlertState(QWidget* field, bool alert) {
    field->setProperty(AlertProperty, alert);
    field->update();
}

bool hasAlertState(const QWidget* field) {
    return field && field->property(AlertProperty).toBool();
}

void setRingRadius(QWidget* control, int radius) {
    control->setProperty(RingProperty, radius);
}

int ringRadius(const QWidget* control) {
    const QVariant radius = control ? control->property(RingProperty) : QVariant();
    return radius.isValid() ? radius.toInt() : Tokens::RadiusControl;
}

bool hasRingRadius(const QWidget* control) {
    return control && control->property(RingProperty).isValid();
}

void setTextAreaLook(QWidget* view) {
    view->setProperty(TextAreaProperty, true);
}

bool hasTextAreaLook(const QWidget* view) {
    return qobject_cast<const QTextEdit*>(view) || qobject_cast<const QPlainTextEdit*>(view) ||
           (view && view->property(TextAreaProperty).toBool());
}

void setSidebarLook(QAbstractItemView* view) {
    view->setProperty(SidebarProperty, true);
    view->setFrameShape(QFrame::NoFrame);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Midlight is the sunken colour in all our palettes, so the list follows the theme.
    view->viewport()->setBackgroundRole(QPalette::Midlight);
    view->setBackgroundRole(QPalette::Midlight);
}

bool hasSidebarLook(const QWidget* view) {
    return view && view->property(SidebarProperty).toBool();
}

void setDestructive(QAction* action) {
    action->setProperty(DestructiveProperty, true);
}

bool isDestructive(const QAction* action) {
    return action && action->property(DestructiveProperty).toBool();
}

}  // namespace Fenk
