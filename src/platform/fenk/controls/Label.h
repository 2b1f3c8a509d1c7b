#pragma once

#include <QLabel>

#include "fenk/style/Theme.h"

namespace Fenk {

/// Text from outside as a tool tip, which would take it for markup where it looks like some.
QString plainToolTip(const QString& text);

/// Text of one of the product's kinds, in its font and colour in whatever theme. Plain text unless told
/// otherwise; text that does not fit into its lines can be elided, with the whole of it as tool tip.
class Label : public QLabel {
    Q_OBJECT
public:
    enum Kind { Body, Strong, Secondary, Small, Heading, Title };
    Q_ENUM(Kind)

    explicit Label(Kind kind, QWidget* parent = nullptr);
    explicit Label(const QString& text, Kind kind = Body, QWidget* parent = nullptr);

    /// Another colour than the kind's own, for states: danger, warning, success.
    void setTextRole(Theme::Role role);

    void setElided(bool elided);
    /// Elided at the end of so many lines; each is as wide as the label may be.
    void setElidedAfter(int lines);

    /// Wrapped text that would like lines of this width at most, but takes less.
    void setReadingWidth(int width);
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void applyColor();
    QStringList brokenLines(int width) const;
    bool cuts() const;

    Theme::Role m_role = Theme::Text;
    int m_readingWidth = 0;
    int m_lines = 1;
    bool m_elided = false;
};

}  // namespace Fenk
