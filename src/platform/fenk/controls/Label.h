#pragma once

#include <QLabel>

#include "fenk/style/Theme.h"

namespace Fenk {

/// Escapes untrusted text for a tool tip, which would otherwise interpret markup in it.
QString plainToolTip(const QString& text);

/// Text of one kind, in the font and colour of the kind in every theme. Plain text unless set otherwise. Text
/// that does not fit can be elided; the tool tip then shows all of it.
class Label : public QLabel {
    Q_OBJECT
public:
    enum Kind { Body, Strong, Secondary, Small, Heading, Title };
    Q_ENUM(Kind)

    explicit Label(Kind kind, QWidget* parent = nullptr);
    explicit Label(const QString& text, Kind kind = Body, QWidget* parent = nullptr);

    /// Replaces the colour of the kind, for states: danger, warning, success.
    void setTextRole(Theme::Role role);

    void setElided(bool elided);
    /// Wraps the text and elides it at the end of the last of `lines` lines.
    void setElidedAfter(int lines);

    /// Wraps the text; the preferred width is `width`, but the label can be narrower.
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
    QStringList wrappedLines(int width) const;
    bool isTooLong() const;

    Theme::Role m_role = Theme::Text;
    int m_readingWidth = 0;
    int m_lines = 1;
    bool m_elided = false;
};

}  // namespace Fenk
