#pragma once

#include "fenk/window/MainWindow.h"

class AddDispatcher;
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
    AddDispatcher* addDispatcher() const { return m_add; }

Q_SIGNALS:
    /// The user chose, dropped or pasted a file to run, or added a program, whose address it is then.
    void openRequested(const QString& path);

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
    /// False when the clipboard has nothing that could be added.
    bool paste();
    void pasteOrTell();
    /// By the page that adds programs if that is shown.
    void take(const QStringList& inputs);

    SearchWidget* m_searchWidget;
    IndexView* m_indexView;
    DropFrame* m_dropFrame;
    AddDispatcher* m_add;
    bool m_wasShown = false;
};
