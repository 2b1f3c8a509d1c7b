#pragma once

#include "fenk/style/Theme.h"
#include "widgets/DropArea.h"

class QPushButton;
class QUrl;

namespace Fenk {
class Label;
}

/// Takes a set-up program: chosen in a file dialog, or dropped. GUI thread.
class FileSelectWidget : public DropArea {
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

private:
    void choose();
    void onDropped(const QList<QUrl>& urls);
    void showFile();

    QString m_file;
    Fenk::Label* m_name;
    Fenk::Label* m_hint;
    QPushButton* m_choose;
};
