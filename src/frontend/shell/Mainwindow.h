#pragma once

#include "fenk/window/MainWindow.h"

class DropFrame;
class IndexView;
class SearchWidget;

/// The library window. Owned by the application object, which creates it at the first request to show it; a
/// launch of a file never creates it.
class Mainwindow : public Fenk::MainWindow {
    Q_OBJECT
public:
    Mainwindow();

    IndexView* indexView() const { return m_indexView; }

Q_SIGNALS:
    /// The user chose or dropped a file to run.
    void openRequested(const QString& path);
    /// The user wants this folder or .zip as a program in a bottle of its own.
    void portableRequested(const QString& path);

public Q_SLOTS:
    void themeChanged();

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void setUp();
    void setUpTitlebarMenu();
    /// Adds the file or address in the clipboard, if it is one.
    void paste();

    SearchWidget* m_searchWidget;
    IndexView* m_indexView;
    DropFrame* m_dropFrame;
    bool m_wasShown = false;
};
