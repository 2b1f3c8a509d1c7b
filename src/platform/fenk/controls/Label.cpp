#include "fenk/controls/Label.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QTextDocument>
#include <QTextLayout>

namespace Fenk {

namespace {

Theme::FontRole fontOf(Label::Kind kind) {
    switch (kind) {
        case Label::Strong:
            return Theme::BodyStrong;
        case Label::Small:
            return Theme::Small;
        case Label::Heading:
            return Theme::Heading;
        case Label::Title:
            return Theme::Title;
        default:
            return Theme::Body;
    }
}

}  // namespace

QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text;
}

Label::Label(Kind kind, QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setFont(Theme::instance()->font(fontOf(kind)));
    m_role = kind == Secondary || kind == Small ? Theme::Secondary : Theme::Text;
    applyColor();
    connect(Theme::instance(), &Theme::changed, this, &Label::applyColor);
}

Label::Label(const QString& text, Kind kind, QWidget* parent) : Label(kind, parent) {
    setText(text);
}

void Label::setTextRole(Theme::Role role) {
    m_role = role;
    applyColor();
}

void Label::applyColor() {
    QPalette colors = Theme::instance()->palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        colors.setColor(group, QPalette::WindowText, Theme::instance()->color(m_role));
        colors.setColor(group, QPalette::Text, Theme::instance()->color(m_role));
    }
    setPalette(colors);
}

void Label::setElided(bool elided) {
    m_elided = elided;
    updateGeometry();
    update();
}

void Label::setElidedAfter(int lines) {
    m_lines = lines;
    setElided(true);
}

/// At most as many lines as are shown; the last one has all the remaining text.
QStringList Label::wrappedLines(int width) const {
    const QString all = text().simplified();
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout(all, font());
    layout.setTextOption(option);
    QStringList lines;
    int from = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid() && lines.size() < m_lines - 1;
         line = layout.createLine()) {
        line.setLineWidth(width);
        lines << all.mid(from, line.textLength()).trimmed();
        from += line.textLength();
    }
    layout.endLayout();
    if (from < all.size())
        lines << all.mid(from).trimmed();
    return lines;
}

void Label::setReadingWidth(int width) {
    m_readingWidth = width;
    setWordWrap(width > 0);
    updateGeometry();
}

int Label::heightForWidth(int width) const {
    // A layout asks for the width that it has, also where the label may not be as wide.
    const int shown = qMin(width, maximumWidth());
    if (m_lines > 1 && wordWrap()) {
        const QMargins margins = contentsMargins();
        const int lines = qMax(1, wrappedLines(shown - margins.left() - margins.right()).size());
        return lines * fontMetrics().lineSpacing() + margins.top() + margins.bottom();
    }
    return QLabel::heightForWidth(m_readingWidth > 0 ? qMin(shown, m_readingWidth) : shown);
}

QSize Label::sizeHint() const {
    if (m_lines > 1) {
        const int width = qMin(QLabel::sizeHint().width(), maximumWidth());
        return {width, qMax(1, wrappedLines(width).size()) * fontMetrics().lineSpacing()};
    }
    if (m_readingWidth == 0)
        return QLabel::sizeHint();
    int natural = 0;
    const QStringList lines = text().split('\n');
    for (const QString& line : lines)
        natural = qMax(natural, fontMetrics().horizontalAdvance(line));
    const int width = qMin(m_readingWidth, natural + 2);
    return {width, heightForWidth(width)};
}

bool Label::isTooLong() const {
    const int room = contentsRect().width();
    if (m_lines > 1)
        return fontMetrics().horizontalAdvance(wrappedLines(room).value(m_lines - 1)) > room;
    return m_elided && fontMetrics().horizontalAdvance(text()) > room;
}

QSize Label::minimumSizeHint() const {
    QSize hint = QLabel::minimumSizeHint();
    if (m_elided)
        hint.setWidth(fontMetrics().horizontalAdvance(QChar(0x2026)) * 2);
    if (m_lines > 1)
        hint.setHeight(sizeHint().height());
    return hint;
}

bool Label::event(QEvent* event) {
    // A new text of the same width causes no resize event.
    if (event->type() == QEvent::ToolTip && m_elided)
        setToolTip(isTooLong() ? plainToolTip(text()) : QString());
    return QLabel::event(event);
}

void Label::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    if (m_elided)
        setToolTip(isTooLong() ? plainToolTip(text()) : QString());
}

void Label::paintEvent(QPaintEvent* event) {
    if (m_lines == 1 && !isTooLong()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    const QRect room = contentsRect();
    QStringList shown = m_lines > 1 ? wrappedLines(room.width()) : QStringList(text());
    for (QString& line : shown)
        line = fontMetrics().elidedText(line, Qt::ElideRight, room.width());
    style()->drawItemText(&painter, room, int(QStyle::visualAlignment(layoutDirection(), alignment())),
                          palette(), isEnabled(), shown.join('\n'), foregroundRole());
}

}  // namespace Fenk
