#pragma once

#include <QObject>
#include <QTimer>
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
    void slide(bool animated);

    EntriesColumn* m_column;
    QWidget* m_window;
    bool m_isExpanded = true;  ///< wanted; the width may follow
    QTimer m_delay;
    QVariantAnimation m_slide;
};
