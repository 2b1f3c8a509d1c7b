#include "programs/RunStateButton.h"

#include <QPainter>

#include "fenk/style/Color.h"
#include "fenk/style/Paint.h"
#include "fenk/style/SymbolicIconEngine.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "widgets/WidgetImages.h"

using namespace Fenk;

namespace {
const QColor QuitColor("#F55058");
constexpr int Gap = Tokens::Space4;
}  // namespace

RunStateButton::RunStateButton(QWidget* parent) : QPushButton(parent) {
    setAccessibleName("appitem_running_state");
    setFont(Theme::instance()->font(Theme::SmallStrong));
    setAttribute(Qt::WA_Hover);
    setFixedHeight(Tokens::CompactHeight);
    setState(Idle);
}

void RunStateButton::setState(State state) {
    m_state = state;
    const QString texts[] = {m_isWordy ? tr("Run") : QString(), m_isWordy ? tr("Quit") : tr(" Quit"),
                             tr("Installing"), tr("Repair"), tr("Install")};
    setText(texts[state]);
    setToolTip(state == Idle && !m_isWordy ? tr("Run") : QString());
    setEnabled(state != Installing);
    setFixedWidth(sizeHint().width());
    update();
}

void RunStateButton::setWordy(bool wordy) {
    m_isWordy = wordy;
    setState(m_state);
}

QIcon RunStateButton::picture() const {
    if (m_state == Install)
        return Theme::icon("cxb_install_app");
    return QIcon(widgetImage(m_state == Idle ? "play.svg" : "stop.svg"));
}

QSize RunStateButton::sizeHint() const {
    const int textWidth = fontMetrics().horizontalAdvance(text().trimmed());
    if (textWidth == 0)
        return {Tokens::CompactHeight, Tokens::CompactHeight};
    const int left = !hasPicture() ? Tokens::Space12 : Tokens::Space8 + Tokens::IconSmall + Gap;
    return {left + textWidth + Tokens::Space12, Tokens::CompactHeight};
}

void RunStateButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QColor color = m_state == Running      ? QuitColor
                         : m_state == Installing ? Paint::color(Theme::Secondary)
                         : m_state == Repair     ? Paint::color(Theme::Warning)
                                                 : Paint::color(Theme::Accent);
    QColor ground = m_state == Idle || m_state == Install ? Paint::color(Theme::AccentSoft)
                                                          : Paint::color(Theme::Surface);
    if (m_state != Installing && (underMouse() || isDown()))
        ground = mix(ground, color, isDown() ? 0.24 : 0.12);
    Paint::box(&painter, rect(), Tokens::RadiusControl, ground,
               m_state == Running || m_state == Repair ? withAlpha(color, 0.5) : QColor());
    const QString words = text().trimmed();
    if (!hasPicture()) {
        painter.setPen(color);
        painter.drawText(rect(), Qt::AlignCenter, words);
        return;
    }
    int x = words.isEmpty() ? (width() - Tokens::IconSmall) / 2 : Tokens::Space8;
    painter.drawPixmap(
        x, (height() - Tokens::IconSmall) / 2,
        tintedPixmap(picture(), QSize(Tokens::IconSmall, Tokens::IconSmall), devicePixelRatioF(), color));
    x += Tokens::IconSmall + Gap;
    painter.setPen(color);
    painter.drawText(QRect(x, 0, width() - x, height()), Qt::AlignVCenter | Qt::AlignLeft, words);
}
