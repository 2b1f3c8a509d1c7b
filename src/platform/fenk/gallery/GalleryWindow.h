#pragma once

#include "fenk/window/MainWindow.h"

class QListWidget;
class QStackedWidget;

namespace Gallery {

/// Shows every control of the toolkit in its states, for designers, screenshots and tests that measure
/// controls.
class GalleryWindow : public Fenk::MainWindow {
    Q_OBJECT
public:
    explicit GalleryWindow(QWidget* parent = nullptr);

    static QStringList pageNames();
    bool showPage(const QString& name);
    QWidget* page(int index) const;

private:
    QListWidget* m_sidebar;
    QStackedWidget* m_pages;
};

}  // namespace Gallery
