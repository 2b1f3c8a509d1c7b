#include "shell/configuration/hints/CustomSPitter.h"

#include <QKeyEvent>
#include <QPainter>

#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"

using namespace Fenk;

namespace {
constexpr int GripLength = Tokens::Space32;
constexpr int KeyStep = Tokens::Space16;
}  // namespace

CustomSplitterHandle::CustomSplitterHandle(Qt::Orientation direction, QSplitter* parent)
    : QSplitterHandle(direction, parent) {
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(tr("Change the size of the parts"));
    setAttribute(Qt::WA_Hover);
    setRingRadius(this, Tokens::RadiusSmall);
}

void CustomSplitterHandle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool isHorizontal = orientation() == Qt::Horizontal;
    const QSize size = isHorizontal ? QSize(Tokens::Space4, GripLength) : QSize(GripLength, Tokens::Space4);
    QRect grip({}, size);
    grip.moveCenter(rect().center());
    const Theme::Role role = underMouse() || hasFocus() ? Theme::Accent : Theme::Border;
    Paint::box(&painter, grip, Tokens::Space4 / 2.0, Paint::color(role));
}

void CustomSplitterHandle::keyPressEvent(QKeyEvent* event) {
    const bool isHorizontal = orientation() == Qt::Horizontal;
    const int place = isHorizontal ? x() : y();
    if (event->key() == (isHorizontal ? Qt::Key_Left : Qt::Key_Up))
        moveSplitter(place - KeyStep);
    else if (event->key() == (isHorizontal ? Qt::Key_Right : Qt::Key_Down))
        moveSplitter(place + KeyStep);
    else
        QSplitterHandle::keyPressEvent(event);
}

CustomSPitter::CustomSPitter(Qt::Orientation direction, QWidget* parent) : QSplitter(direction, parent) {
    setChildrenCollapsible(false);
    setHandleWidth(Tokens::Space12);
}

QSplitterHandle* CustomSPitter::createHandle() {
    return new CustomSplitterHandle(orientation(), this);
}
