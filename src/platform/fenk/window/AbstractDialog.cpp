#include "fenk/window/AbstractDialog.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <QWindow>

#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "fenk/window/DialogAnchor.h"
#include "fenk/window/MainWindow.h"
#include "fenk/window/WindowFrame.h"

namespace Fenk {

AbstractDialog::AbstractDialog(QWidget* parent)
    : QDialog(parent),
      m_frame(new WindowFrame(this)),
      m_icon(new QLabel),
      m_title(new Label(Label::Heading)),
      m_close(new IconButton("fenk-close", tr("Close"))),
      m_body(new QVBoxLayout) {
    m_title->setAlignment(Qt::AlignCenter);
    m_title->setWordWrap(true);
    m_title->setObjectName("dialog_title");
    // A title of several lines keeps the distance from the edge that one line has.
    const int above = (Tokens::ControlHeight - m_title->fontMetrics().height()) / 2;
    m_title->setContentsMargins(0, above, 0, above);
    m_icon->setFixedSize(Tokens::IconLarge, Tokens::IconLarge);
    m_close->setObjectName("dialog_close");
    m_close->setFocusPolicy(Qt::TabFocus);
    connect(m_close, &QToolButton::clicked, this, &QWidget::close);

    // Equal columns keep the title in the middle.
    auto* head = new QGridLayout;
    head->setContentsMargins(Tokens::Space12, Tokens::Space8, Tokens::Space8, 0);
    head->setSpacing(0);
    head->setColumnMinimumWidth(0, Tokens::ControlHeight);
    head->setColumnMinimumWidth(2, Tokens::ControlHeight);
    head->setColumnStretch(1, 1);
    head->setRowMinimumHeight(0, Tokens::ControlHeight);
    head->addWidget(m_icon, 0, 0, Qt::AlignLeft | Qt::AlignVCenter);
    head->addWidget(m_title, 0, 1);
    head->addWidget(m_close, 0, 2, Qt::AlignRight | Qt::AlignTop);

    new DialogAnchor(this);
    m_body->setContentsMargins(0, 0, 0, 0);
    m_body->setSpacing(0);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(head);
    layout->addLayout(m_body, 1);
}

void AbstractDialog::setTitle(const QString& title) {
    m_title->setText(title);
    setWindowTitle(title);
}

QString AbstractDialog::title() const {
    return m_title->text();
}

void AbstractDialog::setTitleLines(int lines) {
    m_title->setElidedAfter(lines);
}

void AbstractDialog::setIcon(const QIcon& icon) {
    m_icon->setPixmap(icon.pixmap(windowHandle(), m_icon->size()));
    setWindowIcon(icon);
}

void AbstractDialog::setCloseButtonVisible(bool visible) {
    m_close->setVisible(visible);
}

void AbstractDialog::moveToCenter() {
    moveToMiddle(this);
}

void AbstractDialog::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    m_frame->paint(&painter);
}

void AbstractDialog::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    // Qt limits the width of a new dialog; wrapped text then needs more height.
    const int needed = layout()->totalHeightForWidth(width());
    if (needed > height() && maximumHeight() >= needed)
        resize(width(), needed);
}

void AbstractDialog::mousePressEvent(QMouseEvent* event) {
    m_pressed = event->button() == Qt::LeftButton;
    m_pressedAt = event->pos();
}

void AbstractDialog::mouseMoveEvent(QMouseEvent* event) {
    if (!m_pressed || (event->pos() - m_pressedAt).manhattanLength() < QApplication::startDragDistance())
        return;
    m_pressed = false;
    if (windowHandle())
        windowHandle()->startSystemMove();
}

}  // namespace Fenk
