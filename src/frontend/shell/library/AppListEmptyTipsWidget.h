#pragma once

#include <QWidget>

/// What the main window shows while no program is known: one sentence and the one thing to do, choosing a
/// Windows program, by button or by dropping a file.
class WelcomePage : public QWidget {
    Q_OBJECT
public:
    explicit WelcomePage(QWidget* parent = nullptr);

Q_SIGNALS:
    void fileChosen(const QString& path);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void choose();
    void setDropTarget(bool on);

    bool m_dropTarget = false;
};
