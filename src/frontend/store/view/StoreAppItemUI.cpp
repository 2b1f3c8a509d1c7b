#include "store/view/StoreAppItemUI.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QPainter>

#include "fenk/controls/Label.h"
#include "fenk/style/Paint.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "programs/RunStateButton.h"
#include "programs/StarRating.h"
#include "store/images/NetworkImageLabel.h"
#include "store/view/HotLabel.h"
#include "store/view/SkeletonCard.h"

using namespace Fenk;
using AppStoreViewUtils::ButtonState;

namespace {

constexpr int TextLeft = SkeletonCard::SideMargin + SkeletonCard::IconEdge + SkeletonCard::SideMargin;
constexpr int Right = SkeletonCard::Card.width() - SkeletonCard::SideMargin;
constexpr int LongestLine = 350;
// The four lines of text.
constexpr int NameTop = 9;
constexpr int NameHeight = 20;
constexpr int StarsTop = 32;
constexpr int VersionTop = 50;
constexpr int BriefTop = 69;
constexpr int LineHeight = 17;

QAccessibleInterface* accessibleOf(const QString& className, QObject* object) {
    auto* item = className == QLatin1String("StoreAppItemUI") ? qobject_cast<QWidget*>(object) : nullptr;
    return item ? new QAccessibleWidget(item, QAccessible::ListItem) : nullptr;
}

RunStateButton::State faceOf(ButtonState state) {
    switch (state) {
        case ButtonState::Run:
            return RunStateButton::Idle;
        case ButtonState::Quit:
            return RunStateButton::Running;
        case ButtonState::Installing:
            return RunStateButton::Installing;
        default:
            return RunStateButton::Install;
    }
}

/// The keys that move among the cards.
bool isMove(int key) {
    return key >= Qt::Key_Home && key <= Qt::Key_PageDown;
}

Label* makeLine(QWidget* card, const char* name, Label::Kind kind) {
    auto* line = new Label(kind, card);
    line->setObjectName(name);
    line->setElided(true);
    return line;
}

}  // namespace

StoreAppItemUI::StoreAppItemUI(QWidget* parent)
    : QWidget(parent),
      m_icon(new NetworkImageLabel(this)),
      m_name(makeLine(this, "storeapp_name", Label::Strong)),
      m_hot(new HotLabel(this)),
      m_stars(new StarRating(this)),
      m_version(makeLine(this, "storeapp_version", Label::Small)),
      m_brief(makeLine(this, "storeapp_brief", Label::Small)),
      m_button(new RunStateButton(this)) {
    static const bool known = (QAccessible::installFactory(accessibleOf), true);
    Q_UNUSED(known)
    setFixedSize(SkeletonCard::Card);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::ClickFocus);
    setRingRadius(this, Tokens::RadiusCard);
    m_icon->setGeometry(SkeletonCard::SideMargin, (height() - SkeletonCard::IconEdge) / 2,
                        SkeletonCard::IconEdge, SkeletonCard::IconEdge);
    m_stars->setReadOnly(true);
    m_stars->setFixedHeight(SkeletonCard::StarsHeight);
    m_stars->move(TextLeft, StarsTop);
    m_brief->setGeometry(TextLeft, BriefTop, Right - TextLeft, LineHeight);
    m_button->setWordy(true);
    m_button->setFocusPolicy(Qt::NoFocus);
    m_button->installEventFilter(this);
    connect(m_button, &QPushButton::clicked, this, &StoreAppItemUI::press);
}

void StoreAppItemUI::setIndex(const QModelIndex& index) {
    if (m_index != index)
        m_sincePress.invalidate();
    m_index = index;
}

void StoreAppItemUI::setApp(const OpenAPI::VeskClientAppInfo& app) {
    m_appName = AppStoreViewUtils::oneLine(app.getAppName());
    m_name->setText(m_appName);
    m_hot->setVisible(app.getRecommend() == 1);
    m_stars->setStars(app.getScore());
    m_stars->setToolTip(AppStoreViewUtils::scoreText(app.getScore()));
    const QString version = AppStoreViewUtils::oneLine(app.getPackageVersion());
    m_version->setText(version.isEmpty() ? QString() : QString("%1%2").arg(tr("App Version: "), version));
    m_brief->setText(AppStoreViewUtils::oneLine(app.getBriefInfo()));
    layOut();
    updateNames();
}

void StoreAppItemUI::setIcon(const QIcon& icon) {
    if (icon.cacheKey() == m_iconKey)
        return;
    m_iconKey = icon.cacheKey();
    m_icon->setPixmap(icon.isNull() ? QPixmap() : icon.pixmap(icon.availableSizes().value(0)));
}

void StoreAppItemUI::setState(ButtonState state) {
    m_state = state;
    // A disabled button would hand its focus to the next widget of the window.
    if (state == ButtonState::Installing && m_button->hasFocus())
        setFocus(Qt::OtherFocusReason);
    m_button->setState(faceOf(state));
    layOut();
    updateNames();
}

void StoreAppItemUI::layOut() {
    m_button->move(Right - m_button->width(), (height() - m_button->height()) / 2);
    const int room = qMin(LongestLine, m_button->x() - SkeletonCard::Spacing - TextLeft);
    const int hot = m_hot->isHidden() ? 0 : SkeletonCard::Spacing + m_hot->width();
    const int nameWidth = qMin(m_name->fontMetrics().horizontalAdvance(m_appName) + 1, room - hot);
    m_name->setGeometry(TextLeft, NameTop, nameWidth, NameHeight);
    m_hot->move(TextLeft + nameWidth + SkeletonCard::Spacing, NameTop + (NameHeight - m_hot->height()) / 2);
    m_version->setGeometry(TextLeft, VersionTop, room, LineHeight);
}

void StoreAppItemUI::updateNames() {
    //: the name of an application, and what its button does or says
    setAccessibleName(tr("%1, %2").arg(m_appName, m_button->text()));
    setAccessibleDescription(m_brief->text());
    m_button->setAccessibleName(m_button->text());
    m_button->setAccessibleDescription(tr("%1 %2", "button, name").arg(m_button->text(), m_appName));
}

void StoreAppItemUI::setTabStop(bool on) {
    setFocusPolicy(on ? Qt::StrongFocus : Qt::ClickFocus);
    m_button->setFocusPolicy(on ? Qt::TabFocus : Qt::NoFocus);
}

bool StoreAppItemUI::isBusy() const {
    return hasFocus() || m_button->hasFocus();
}

void StoreAppItemUI::press() {
    // The second click of a double click would undo the first.
    if (m_sincePress.isValid() && m_sincePress.elapsed() < QApplication::doubleClickInterval())
        return;
    m_sincePress.start();
    Q_EMIT pressed();
}

bool StoreAppItemUI::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::HoverEnter:
        case QEvent::HoverLeave:
        case QEvent::FocusIn:
        case QEvent::FocusOut:
            update();
            break;
        default:
            break;
    }
    return QWidget::event(event);
}

bool StoreAppItemUI::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update();
    if (watched == m_button && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            if (!key->isAutoRepeat())
                m_button->animateClick();
            return true;
        }
        if (isMove(key->key())) {  // a button would give the focus to another widget of the window
            QCoreApplication::sendEvent(this, event);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void StoreAppItemUI::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const bool isPress = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
    if (!isPress || (event->modifiers() & ~Qt::KeypadModifier)) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (!event->isAutoRepeat() && m_button->isEnabled())
        press();
}

void StoreAppItemUI::paintEvent(QPaintEvent*) {
    if (!underMouse() && !isBusy())
        return;
    QPainter painter(this);
    Paint::box(&painter, rect(), Tokens::RadiusCard, Paint::color(Theme::Surface),
               Paint::color(Theme::Border));
}
