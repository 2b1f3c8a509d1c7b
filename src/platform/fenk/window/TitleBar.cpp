#include "fenk/window/TitleBar.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

#include "fenk/controls/IconButton.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/window/StandardMenu.h"

namespace Fenk {

namespace {

QHBoxLayout* sideLayout(QWidget* side) {
    auto* layout = new QHBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space4);
    return layout;
}

}  // namespace

TitleBar::TitleBar(QWidget* parent)
    : QWidget(parent),
      m_icon(new QLabel),
      m_title(new QLabel(this)),
      m_left(new QWidget(this)),
      m_right(new QWidget(this)),
      m_leftLayout(sideLayout(m_left)),
      m_rightLayout(sideLayout(m_right)),
      m_menuButton(new IconButton("fenk-menu", tr("Menu"))),
      m_minimize(new IconButton("fenk-minimize", tr("Minimize"))),
      m_maximize(new IconButton("fenk-maximize", tr("Maximize"))),
      m_close(new IconButton("fenk-close", tr("Close"))) {
    setFixedHeight(Tokens::TitleBarHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_title->setFont(Theme::instance()->font(Theme::BodyStrong));
    m_title->setAlignment(Qt::AlignCenter);
    m_title->setTextFormat(Qt::PlainText);
    m_icon->setFixedSize(Tokens::IconLarge, Tokens::IconLarge);
    m_icon->hide();
    m_leftLayout->addWidget(m_icon);
    m_menuButton->setObjectName("titlebar_menu");
    m_minimize->setObjectName("titlebar_minimize");
    m_maximize->setObjectName("titlebar_maximize");
    m_close->setObjectName("titlebar_close");
    for (IconButton* button : {m_menuButton, m_minimize, m_maximize, m_close})
        m_rightLayout->addWidget(button);

    // The button has the focus only after keyboard navigation.
    connect(m_menuButton, &QToolButton::clicked, this, [this] { openMenu(m_menuButton->hasFocus()); });
    connect(m_minimize, &QToolButton::clicked, this, [this] { window()->showMinimized(); });
    connect(m_maximize, &QToolButton::clicked, this, &TitleBar::toggleMaximized);
    connect(m_close, &QToolButton::clicked, this, [this] { window()->close(); });
    setMenu(new QMenu(this));
    window()->installEventFilter(this);
    updateButtons();
}

void TitleBar::setIcon(const QIcon& icon) {
    m_icon->setPixmap(icon.pixmap(window()->windowHandle(), m_icon->size()));
    m_icon->setVisible(!icon.isNull());
    placeMiddle();
}

void TitleBar::setTitle(const QString& title) {
    m_title->setText(title);
    placeMiddle();
}

QString TitleBar::title() const {
    return m_title->text();
}

void TitleBar::setMenu(QMenu* menu) {
    if (!menu || menu == m_menu)
        return;
    delete m_menu;
    m_menu = menu;
    m_menu->setParent(this, m_menu->windowFlags());
    appendStandardActions(m_menu);
}

void TitleBar::setMenuVisible(bool visible) {
    m_menuButton->setVisible(visible);
    placeMiddle();
}

void TitleBar::setCustomWidget(QWidget* widget) {
    if (m_custom == widget)
        return;
    delete m_custom;
    m_custom = widget;
    if (widget) {
        widget->setParent(this);
        widget->show();
    }
    m_title->setVisible(!widget);
    placeMiddle();
}

void TitleBar::addWidget(QWidget* widget, Qt::Alignment side) {
    if (side & Qt::AlignLeft)
        m_leftLayout->addWidget(widget);
    else
        m_rightLayout->insertWidget(m_rightLayout->indexOf(m_menuButton), widget);
    placeMiddle();
}

void TitleBar::setDisableFlags(Qt::WindowFlags flags) {
    m_disabled = flags;
    updateButtons();
}

void TitleBar::setSeparatorVisible(bool visible) {
    m_separator = visible;
    update();
}

QSize TitleBar::sizeHint() const {
    const int sides = 2 * qMax(m_left->sizeHint().width(), m_right->sizeHint().width()) + 4 * Tokens::Space8;
    const int middle = m_custom ? qMax(m_custom->minimumWidth(), m_custom->minimumSizeHint().width()) : 0;
    return {sides + middle, Tokens::TitleBarHeight};
}

bool TitleBar::maximizable() const {
    return !(m_disabled & Qt::WindowMaximizeButtonHint) && window()->minimumSize() != window()->maximumSize();
}

void TitleBar::toggleMaximized() {
    if (!maximizable())
        return;
    if (window()->isMaximized())
        window()->showNormal();
    else
        window()->showMaximized();
}

void TitleBar::updateButtons() {
    m_minimize->setVisible(!(m_disabled & Qt::WindowMinimizeButtonHint));
    m_maximize->setVisible(maximizable());
    m_close->setVisible(!(m_disabled & Qt::WindowCloseButtonHint));
    const bool maximized = window()->isMaximized();
    m_maximize->setIconName(maximized ? "fenk-restore" : "fenk-maximize");
    m_maximize->setWord(maximized ? tr("Restore") : tr("Maximize"));
    placeMiddle();
}

void TitleBar::placeMiddle() {
    m_left->adjustSize();
    m_right->adjustSize();
    const int margin = Tokens::Space12;
    m_left->move(margin, (height() - m_left->height()) / 2);
    m_right->move(width() - m_right->width() - Tokens::Space8, (height() - m_right->height()) / 2);
    const int from = m_left->geometry().right() + 1 + Tokens::Space8;
    const int to = m_right->x() - Tokens::Space8;
    QWidget* middle = m_custom ? m_custom : m_title;
    const int symmetric = width() - 2 * qMax(from, width() - to);
    int wanted = qMax(middle->sizeHint().width(), middle->minimumWidth());
    wanted = qMin(wanted, qMax(middle->minimumWidth(), to - from));
    // In the middle of the window if possible, else in the remaining space.
    const int x = wanted <= symmetric ? (width() - wanted) / 2 : from;
    const int h =
        m_custom ? qMin(height(), qMax(m_custom->sizeHint().height(), m_custom->minimumHeight())) : height();
    middle->setGeometry(x, (height() - h) / 2, wanted, h);
}

bool TitleBar::openMenu(bool byKeyboard) {
    if (!m_menuButton->isVisible())
        return false;
    Q_EMIT aboutToShowMenu();
    m_menu->popup(m_menuButton->mapToGlobal(
        QPoint(m_menuButton->width() - m_menu->sizeHint().width(), m_menuButton->height() + Tokens::Space4)));
    if (byKeyboard)
        chooseFirstEntry(m_menu);
    return true;
}

bool TitleBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched == window() && (event->type() == QEvent::WindowStateChange ||
                                event->type() == QEvent::Resize || event->type() == QEvent::Show))
        updateButtons();
    return QWidget::eventFilter(watched, event);
}

void TitleBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    placeMiddle();
}

void TitleBar::paintEvent(QPaintEvent*) {
    if (m_separator)
        QPainter(this).fillRect(QRect(0, height() - 1, width(), 1), Theme::instance()->color(Theme::Border));
}

void TitleBar::mousePressEvent(QMouseEvent* event) {
    m_pressed = event->button() == Qt::LeftButton;
    m_pressedAt = event->pos();
}

void TitleBar::mouseMoveEvent(QMouseEvent* event) {
    if (!m_pressed || (event->pos() - m_pressedAt).manhattanLength() < QApplication::startDragDistance())
        return;
    m_pressed = false;
    if (QWindow* handle = window()->windowHandle())
        handle->startSystemMove();
}

void TitleBar::mouseDoubleClickEvent(QMouseEvent* event) {
    m_pressed = false;
    if (event->button() == Qt::LeftButton)
        toggleMaximized();
}

}  // namespace Fenk
