#include "fenk/controls/FloatingMessage.h"

#include <QAccessible>
#include <QDialog>
#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QPainter>
#include <QPushButton>

#include "fenk/controls/Label.h"
#include "fenk/style/Paint.h"
#include "fenk/style/Tokens.h"

namespace Fenk {

FloatingMessage* FloatingMessage::show(QWidget* over, const QIcon& icon, const QString& text, int ms) {
    QWidget* window = over->window();
    delete window->findChild<FloatingMessage*>(QString(), Qt::FindDirectChildrenOnly);
    auto* message = new FloatingMessage(window, icon, text);
    message->place();
    message->QWidget::show();
    message->raise();
    message->m_timer.start(ms);
    QAccessibleEvent event(message, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
    return message;
}

FloatingMessage::FloatingMessage(QWidget* window, const QIcon& icon, const QString& text) : QWidget(window) {
    setAccessibleName(text);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Tokens::Space16, Tokens::Space12, Tokens::Space16, Tokens::Space12);
    layout->setSpacing(Tokens::Space12);
    if (!icon.isNull()) {
        auto* picture = new QLabel;
        picture->setFixedSize(Tokens::IconMedium, Tokens::IconMedium);
        picture->setPixmap(icon.pixmap(window->windowHandle(), picture->size()));
        layout->addWidget(picture, 0, Qt::AlignTop);
    }
    auto* label = new Label(text);
    label->setWordWrap(label->sizeHint().width() > Tokens::DialogMaxWidth);
    layout->addWidget(label, 1);
    window->installEventFilter(this);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &QObject::deleteLater);
}

namespace {

/// Where a message ends. The buttons along the bottom of a dialog stay in reach.
int bottomIn(const QWidget* window) {
    int bottom = window->height() - Tokens::Space24;
    if (!qobject_cast<const QDialog*>(window))
        return bottom;
    for (const QPushButton* button : window->findChildren<QPushButton*>()) {
        const int top = button->mapTo(window, QPoint()).y();
        if (button->isVisible() && top >= window->height() - 2 * Tokens::RowHeight)
            bottom = qMin(bottom, top - Tokens::Space8);
    }
    return bottom;
}

}  // namespace

void FloatingMessage::place() {
    const QWidget* window = parentWidget();
    setMaximumWidth(qMin(window->width() - 2 * Tokens::Space24, Tokens::DialogMaxWidth));
    const int w = qMin(maximumWidth(), sizeHint().width());
    const int h = hasHeightForWidth() ? heightForWidth(w) : sizeHint().height();
    setGeometry((window->width() - w) / 2, qMax(0, bottomIn(window) - h), w, h);
}

void FloatingMessage::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::box(&painter, rect(), Tokens::RadiusCard, Paint::color(Theme::Surface),
               Paint::color(Theme::Border));
}

void FloatingMessage::mousePressEvent(QMouseEvent*) {
    hide();
    deleteLater();
}

bool FloatingMessage::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        place();
    return QWidget::eventFilter(watched, event);
}

}  // namespace Fenk
