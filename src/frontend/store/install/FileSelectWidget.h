#pragma once

#include <QWidget>

#include "fenk/style/Theme.h"

class QPushButton;
class QUrl;

namespace Fenk {
class Label;
}

/// Takes a set-up program: chosen in a file dialog, or dropped. GUI thread.
class FileSelectWidget : public QWidget {
    Q_OBJECT
public:
    explicit FileSelectWidget(QWidget* parent = nullptr);

    QString file() const { return m_file; }
    void setFile(const QString& path);
    /// Whether the file is a regular one that exists now.
    bool hasGoodFile() const;
    /// A line about the file; plain text.
    void setHint(const QString& text, Fenk::Theme::Role role = Fenk::Theme::Secondary);

    /// The first Windows program or package of this machine in a drop, or an empty text.
    static QString setupIn(const QList<QUrl>& urls);

Q_SIGNALS:
    void fileChanged(const QString& path);

protected:
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void choose();
    void showFile();

    QString m_file;
    bool m_isDragged = false;
    Fenk::Label* m_name;
    Fenk::Label* m_hint;
    QPushButton* m_choose;
};
