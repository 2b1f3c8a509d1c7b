#include "launch/banner/BannerCustomButton.h"

#include <QAccessibleWidget>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

#include "fenk/controls/Label.h"
#include "fenk/style/Paint.h"
#include "fenk/style/SymbolicIconEngine.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"

using namespace Fenk;

namespace {

constexpr double PressedOpacity = 0.6;

/// To assistive tools a plain QWidget is no button and cannot be pressed.
class ButtonInterface : public QAccessibleWidget {
public:
    explicit ButtonInterface(BannerCustomButton* button)
        : QAccessibleWidget(button, QAccessible::Button, button->text()) {}

    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    /// The tool does not wait for what a press does, such as a dialog.
    void doAction(const QString& name) override {
        if (name == pressAction() && widget()->isEnabled())
            QMetaObject::invokeMethod(widget(), "clicked", Qt::QueuedConnection);
        else
            QAccessibleWidget::doAction(name);
    }
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* button = qobject_cast<BannerCustomButton*>(object);
    return button ? new ButtonInterface(button) : nullptr;
}

bool presses(const QKeyEvent* event) {
    return event->key() == Qt::Key_Space || event->key() == Qt::Key_Select;
}

}  // namespace

BannerCustomButton::BannerCustomButton(const QIcon& icon, const QString& text, QWidget* parent)
    : QWidget(parent), m_icon(icon), m_label(new Label(text, Label::Small)) {
    static const bool known = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(known)
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFixedHeight(Tokens::CompactHeight);
    setRingRadius(this, Tokens::RadiusControl);
    setAccessibleDescription(text);
    m_label->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Tokens::Space8 + Tokens::IconMedium + Tokens::Space8, 0, Tokens::Space8, 0);
    layout->addWidget(m_label);
}

QString BannerCustomButton::text() const {
    return m_label->text();
}

void BannerCustomButton::setPressed(bool pressed) {
    m_pressed = pressed;
    update();
}

void BannerCustomButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_pressed || underMouse()) {
        const QColor soft = Paint::color(Theme::AccentSoft);
        Paint::box(&painter, rect(), Tokens::RadiusControl, m_pressed ? Paint::step(soft) : soft);
    }
    const QSize size(Tokens::IconMedium, Tokens::IconMedium);
    const QRect place = QStyle::visualRect(
        layoutDirection(), rect(), QRect(QPoint(Tokens::Space8, (height() - size.height()) / 2), size));
    painter.setOpacity(m_pressed ? PressedOpacity : 1);
    painter.drawPixmap(place,
                       tintedPixmap(m_icon, size, devicePixelRatioF(), Paint::color(Theme::Secondary)));
}

void BannerCustomButton::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        setPressed(true);
}

void BannerCustomButton::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton)
        setPressed(rect().contains(event->pos()));
}

void BannerCustomButton::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_pressed)
        return;
    setPressed(false);
    if (rect().contains(event->pos()))
        Q_EMIT clicked();
}

void BannerCustomButton::keyPressEvent(QKeyEvent* event) {
    if (event->isAutoRepeat())
        return;
    if (presses(event))
        setPressed(true);
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        Q_EMIT clicked();
    else
        QWidget::keyPressEvent(event);
}

void BannerCustomButton::keyReleaseEvent(QKeyEvent* event) {
    if (!presses(event) || event->isAutoRepeat() || !m_pressed) {
        QWidget::keyReleaseEvent(event);
        return;
    }
    setPressed(false);
    Q_EMIT clicked();
}

void BannerCustomButton::focusOutEvent(QFocusEvent* event) {
    setPressed(false);
    QWidget::focusOutEvent(event);
}
