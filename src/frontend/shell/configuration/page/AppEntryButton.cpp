#include "shell/configuration/page/AppEntryButton.h"

#include <QContextMenuEvent>
#include <QPainter>

#include "backend/ProgramRecord.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "programs/ProgramIcons.h"

using namespace Fenk;

namespace {

constexpr int IconSize = 32;
constexpr int DotSize = 8;

}  // namespace

AppEntryButton::AppEntryButton(const QString& id, QWidget* parent) : QAbstractButton(parent), m_id(id) {
    setCheckable(true);
    setAutoExclusive(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setRingRadius(this, Tokens::RadiusControl);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    connect(ProgramIcons::instance(), &ProgramIcons::ready, this, [this](const QString& file) {
        if (file == m_icon)
            update();
    });
    connect(Theme::instance(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void AppEntryButton::setEntry(const ProgramEntry& entry) {
    m_icon = ProgramRecord::icon(entry.record);
    m_name = entry.name();
    updateName();
}

void AppEntryButton::setRunning(bool running) {
    m_isRunning = running;
    updateName();
}

void AppEntryButton::setNarrow(bool narrow) {
    m_isNarrow = narrow;
    updateName();
}

void AppEntryButton::updateName() {
    setAccessibleName(m_name);
    setAccessibleDescription(m_isRunning ? tr("is running") : QString());
    const int room = width() - IconSize - 4 * Tokens::Space12;
    setToolTip(m_isNarrow || fontMetrics().horizontalAdvance(m_name) > room ? plainToolTip(m_name)
                                                                            : QString());
    update();
}

QSize AppEntryButton::sizeHint() const {
    return {IconSize + 2 * Tokens::Space12, Tokens::RowHeight + Tokens::Space4};
}

void AppEntryButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Paint::Scope scope(&painter);
    const QRectF all = rect().adjusted(0, 1, 0, -1);
    if (isChecked() || underMouse())
        Paint::box(&painter, all, Tokens::RadiusControl, Paint::color(Theme::AccentSoft));
    if (isChecked())
        Paint::box(&painter,
                   QRectF(all.left(), all.top() + Tokens::Space8, Tokens::SelectionEdge,
                          all.height() - 2 * Tokens::Space8),
                   Tokens::SelectionEdge / 2.0, Paint::color(Theme::Accent));
    const qreal ratio = devicePixelRatioF();
    const qreal left = m_isNarrow ? (width() - IconSize) / 2.0 : Tokens::Space12;
    QRectF icon(left, (height() - IconSize) / 2.0, IconSize, IconSize);
    const QPixmap picture = ProgramIcons::instance()->picture(m_icon, qRound(IconSize * ratio));
    if (picture.isNull()) {
        Paint::box(&painter, icon, Tokens::RadiusControl, Paint::color(Theme::Border));
    } else {
        QRectF place(QPointF(), QSizeF(picture.size()) / ratio);
        place.moveCenter(icon.center());
        painter.drawPixmap(place, picture, picture.rect());
    }
    if (m_isRunning) {
        const QRectF dot(icon.right() - DotSize + 1, icon.bottom() - DotSize + 1, DotSize, DotSize);
        Paint::box(&painter, dot.adjusted(-2, -2, 2, 2), DotSize, Paint::color(Theme::Sunken));
        Paint::box(&painter, dot, DotSize / 2.0, Paint::color(Theme::Success));
    }
    if (m_isNarrow)
        return;
    const QRect words(int(icon.right()) + Tokens::Space12, 0,
                      width() - int(icon.right()) - 2 * Tokens::Space12, height());
    painter.setFont(Theme::instance()->font(isChecked() ? Theme::BodyStrong : Theme::Body));
    painter.setPen(Paint::color(Theme::Text));
    painter.drawText(words, Qt::AlignVCenter | Qt::AlignLeft,
                     painter.fontMetrics().elidedText(m_name, Qt::ElideRight, words.width()));
}

void AppEntryButton::contextMenuEvent(QContextMenuEvent* event) {
    Q_EMIT menuRequested(event->reason() == QContextMenuEvent::Mouse ? event->globalPos()
                                                                     : mapToGlobal(rect().bottomLeft()));
}

void AppEntryButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F10 || event->key() == Qt::Key_Menu)
        Q_EMIT menuRequested(mapToGlobal(rect().bottomLeft()));
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}
