#include "widgets/PageArea.h"

#include <QApplication>
#include <QScrollArea>

void PageArea::setUp(QScrollArea* area, QWidget* content) {
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(content);
    // The window's own ground shows through; setWidget() has set the other.
    area->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    // An area by itself scrolls only to what gets the focus from within it.
    QObject::connect(qApp, &QApplication::focusChanged, area, [area, content](QWidget*, QWidget* now) {
        if (now && content->isAncestorOf(now) && now->visibleRegion().isEmpty())
            area->ensureWidgetVisible(now);
    });
}

QScrollArea* PageArea::around(QWidget* content) {
    auto* area = new QScrollArea;
    setUp(area, content);
    return area;
}
