#pragma once

#include <QWidget>

namespace Fenk {
class LineEdit;
}

/// The path of a log file: typed, or chosen in a save dialog.
class LogFileEdit : public QWidget {
    Q_OBJECT
public:
    explicit LogFileEdit(QWidget* parent = nullptr);

    void setPath(const QString& path);
    QString path() const;
    /// Where the dialog opens while there is no path whose directory exists.
    void setDefaultDirectory(const QString& directory) { m_defaultDirectory = directory; }

    /// Opens the save dialog over this window.
    void choose();

Q_SIGNALS:
    void textChanged(const QString& path);
    void buttonClicked();

private:
    void check();
    void openDialog(const QString& directory);

    Fenk::LineEdit* m_edit;
    QString m_defaultDirectory;
};
