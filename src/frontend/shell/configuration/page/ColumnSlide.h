#pragma once

#include <QObject>
#include <QVariantAnimation>

class EntriesColumn;
class QWidget;

/// The width of the column of programs and, with it, of the window: wide or narrow, as the user left it. GUI
/// thread.
class ColumnSlide : public QObject {
    Q_OBJECT
public:
    ColumnSlide(EntriesColumn* column, QWidget* window);

    /// As the settings say, at once.
    void restore();
    /// Keeps the choice in the settings and moves a little later.
    void toggle();

private:
    void setExpanded(bool expanded, bool animated);

    EntriesColumn* m_column;
    QWidget* m_window;
    bool m_isExpanded = true;
    QVariantAnimation m_slide;
};
