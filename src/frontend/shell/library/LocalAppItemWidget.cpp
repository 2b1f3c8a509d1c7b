#include "shell/library/LocalAppItemWidget.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDebug>
#include <QKeyEvent>
#include <QPainter>

#include "fenk/controls/IconButton.h"
#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "launch/records/FailedStarts.h"
#include "programs/OrphanedBottles.h"
#include "programs/ProgramIcons.h"
#include "programs/RunStateButton.h"
#include "programs/StarRating.h"
#include "programs/TileName.h"
#include "shell/library/LocalAppItemMenu.h"
#include "shell/library/OrphanQuestion.h"
#include "shell/library/TileIcon.h"
#include "shell/properties/AppPropertyDlg.h"

using namespace Fenk;
using ProgramMenu::Action;

namespace {

constexpr QSize Tile(132, 148);
constexpr int IconTop = 6;
constexpr int NameTop = IconTop + Tokens::IconTile + 2;
constexpr int StripTop = Tile.height() - Tokens::CompactHeight - 6;
constexpr int LongestTip = 512;

QAccessibleInterface* accessibleOf(const QString& className, QObject* object) {
    auto* item = className == QLatin1String("LocalAppItemWidget") ? qobject_cast<QWidget*>(object) : nullptr;
    return item ? new QAccessibleWidget(item, QAccessible::ListItem) : nullptr;
}

/// Return presses a button, which outside of dialogs reacts to Space only. False for null.
bool pressPart(QAbstractButton* part, bool isRepeated) {
    if (part && !isRepeated)
        part->animateClick();
    return part != nullptr;
}

}  // namespace

LocalAppItemWidget::LocalAppItemWidget(const ProgramPtr& program, QWidget* parent)
    : AppItemWidget(program, parent),
      m_icon(new TileIcon(this)),
      m_name(new TileName(this)),
      m_stars(new StarRating(this)),
      m_options(new IconButton("fenk-more", tr("Options"), this, IconButton::Compact)),
      m_menu(new LocalAppItemMenu(this, m_options)) {
    static const bool known = (QAccessible::installFactory(accessibleOf), true);
    Q_UNUSED(known)
    setFixedSize(Tile);
    setFocusPolicy(Qt::ClickFocus);
    setRingRadius(this, Tokens::RadiusCard);
    m_icon->move((Tile.width() - Tokens::IconTile) / 2, IconTop);
    m_name->setGeometry(Tokens::Space4, NameTop, Tile.width() - 2 * Tokens::Space4, StripTop - NameTop);
    m_options->setObjectName("appitem_options");
    m_options->move(Tile.width() - m_options->width() - Tokens::Space4, Tokens::Space4);
    connect(m_options, &QToolButton::clicked, this, &LocalAppItemWidget::onBtnOptionClicked);
    connect(m_menu, &LocalAppItemMenu::opened, this, &LocalAppItemWidget::updateActive);
    connect(m_menu, &LocalAppItemMenu::opened, this, &LocalAppItemWidget::menuReady);
    connect(m_menu, &LocalAppItemMenu::closed, this, &LocalAppItemWidget::updateActive, Qt::QueuedConnection);
    connect(m_stars, &StarRating::rated, this, &LocalAppItemWidget::askForRating);
    for (QWidget* part : focusParts()) {
        part->setFocusPolicy(Qt::NoFocus);
        part->hide();
        part->installEventFilter(this);
    }
    connect(&m_raise, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    m_raise.setStartValue(0.0);
    m_raise.setEndValue(1.0);
    m_raise.setEasingCurve(QEasingCurve::OutCubic);
    connect(ProgramIcons::instance(), &ProgramIcons::ready, this, [this](const QString& file) {
        if (file == m_program->icon)
            showPicture();
    });
    connectActions();
    setProgram(program);
}

std::array<QWidget*, 3> LocalAppItemWidget::focusParts() const {
    return {runButton(), m_stars, m_options};
}

QSize LocalAppItemWidget::tileSize() {
    return Tile;
}

void LocalAppItemWidget::setProgram(const ProgramPtr& program) {
    m_program = program;
    m_name->setText(program->name);
    m_stars->setStars(program->stars);
    setAccessibleName(program->name);
    m_options->setAccessibleDescription(tr("Options of %1").arg(program->name));
    showPicture();
    refreshRunState();
}

void LocalAppItemWidget::refreshRunState() {
    AppItemWidget::refreshRunState();
    const bool running = isRunning();
    const bool hasStars = runButton()->text().isEmpty();  // there is no room beside a text
    m_icon->setDot(running         ? TileIcon::Dot::Running
                   : failedStart() ? TileIcon::Dot::Failed
                   : orphan()      ? TileIcon::Dot::Orphaned
                                   : TileIcon::Dot::None);
    updateTexts();
    const int strip = runButton()->width() + (hasStars ? Tokens::Space8 + m_stars->width() : 0);
    const int left = (Tile.width() - strip) / 2;
    runButton()->move(left, StripTop);
    m_stars->move(left + runButton()->width() + Tokens::Space8, StripTop);
    setPartVisible(runButton(), running || m_active);
    setPartVisible(m_stars, m_active && hasStars);
}

void LocalAppItemWidget::updateTexts() {
    const FailedStart* failed = failedStart();
    const OrphanedBottle* bottle = orphan();
    const QString removal = bottle ? OrphanQuestion::textOf(*program(), *bottle) : QString();
    setAccessibleDescription(isRunning() ? tr("Running") : failed ? failed->reason : removal);
    QString tip = QString("<b>%1</b><br>%2")
                      .arg(program()->name.toHtmlEscaped(), program()->path.left(LongestTip).toHtmlEscaped());
    if (failed)
        tip += "<br><br>" + failed->reason.left(LongestTip).toHtmlEscaped();
    if (bottle)
        tip += "<br><br>" + removal.left(LongestTip).toHtmlEscaped();
    setToolTip(tip);
}

/// A hidden part hands the focus to its tile; Qt would hand it to the next widget of the window.
void LocalAppItemWidget::setPartVisible(QWidget* part, bool visible) {
    if (!visible && window()->focusWidget() == part)
        setFocus(Qt::OtherFocusReason);
    part->setVisible(visible);
}

void LocalAppItemWidget::showPicture() {
    m_icon->setPicture(
        ProgramIcons::instance()->picture(m_program->icon, qRound(Tokens::IconTile * devicePixelRatioF())));
}

bool LocalAppItemWidget::isBusy() const {
    return isAncestorOf(QApplication::focusWidget()) || hasFocus() || m_menu->isOpen() || m_menu->isOpening();
}

void LocalAppItemWidget::setTabStop(bool on) {
    setFocusPolicy(on ? Qt::StrongFocus : Qt::ClickFocus);
    for (QWidget* part : focusParts())
        part->setFocusPolicy(on ? Qt::TabFocus : Qt::NoFocus);
}

void LocalAppItemWidget::updateActive() {
    const bool active =
        underMouse() || hasFocus() || isAncestorOf(QApplication::focusWidget()) || m_menu->isOpen();
    if (active == m_active)
        return;
    m_active = active;
    setPartVisible(m_options, active);
    refreshRunState();
    m_raise.setDirection(active ? QAbstractAnimation::Forward : QAbstractAnimation::Backward);
    m_raise.setDuration(Theme::instance()->duration(Tokens::HoverMs));
    m_raise.start();
    if (m_raise.duration() == 0)
        update();
}

bool LocalAppItemWidget::event(QEvent* event) {
    // These keys are the tile's, also if the window has shortcuts for them.
    if (event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_F2 || key == Qt::Key_F10 || key == Qt::Key_Delete)
            event->accept();
    }
    const bool handled = AppItemWidget::event(event);
    switch (event->type()) {
        case QEvent::Enter:
        case QEvent::Leave:
        case QEvent::FocusIn:
        case QEvent::FocusOut:
            updateActive();
            break;
        default:
            break;
    }
    return handled;
}

bool LocalAppItemWidget::eventFilter(QObject* watched, QEvent* event) {
    // Later, because the next focus widget may be a part of this tile.
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        QMetaObject::invokeMethod(this, &LocalAppItemWidget::updateActive, Qt::QueuedConnection);
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) &&
            pressPart(qobject_cast<QAbstractButton*>(watched), key->isAutoRepeat()))
            return true;
    }
    return AppItemWidget::eventFilter(watched, event);
}

void LocalAppItemWidget::paintEvent(QPaintEvent*) {
    const qreal raised = m_raise.duration() ? m_raise.currentValue().toReal() : m_active;
    if (raised <= 0)
        return;
    QPainter painter(this);
    painter.setOpacity(raised);
    Paint::box(&painter, rect(), Tokens::RadiusCard, Paint::color(Theme::Surface),
               Paint::color(Theme::Border));
}

void LocalAppItemWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        activate();
}

void LocalAppItemWidget::keyPressEvent(QKeyEvent* event) {
    if (event->modifiers() & ~Qt::KeypadModifier) {
        AppItemWidget::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            if (!event->isAutoRepeat())
                activate();
            return;
        case Qt::Key_F2:
            AppPropertyDlg::openForRename(*program(), window());
            return;
        case Qt::Key_F10:
            onBtnOptionClicked();
            return;
        case Qt::Key_Delete:
            askRemoval();
            return;
        default:
            AppItemWidget::keyPressEvent(event);
    }
}

void LocalAppItemWidget::contextMenuEvent(QContextMenuEvent* event) {
    openMenu(event->reason() == QContextMenuEvent::Mouse ? event->globalPos() : QPoint());
}

void LocalAppItemWidget::onBtnOptionClicked() {
    openMenu(QPoint());
}

void LocalAppItemWidget::openMenu(const QPoint& place) {
    qInfo() << "onBtnOptionClicked";
    m_menu->open(place);
}

QAction* LocalAppItemWidget::action(Action action) const {
    return m_menu->action(action);
}

QMenu* LocalAppItemWidget::optionMenu() const {
    return m_menu->menu();
}
