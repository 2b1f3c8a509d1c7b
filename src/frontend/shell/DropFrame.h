#pragma once

#include <QWidget>

#include "shell/adding/AddedFile.h"

class QMimeData;

/// Covers the window while something that can be run or added is dragged over it. Takes no events itself.
class DropFrame : public QWidget {
    Q_OBJECT
public:
    explicit DropFrame(QWidget* parent);

    /// The path of the only local Windows program in a drag, or an empty string.
    static QString programIn(const QMimeData* data);
    /// What else can be added, or nothing. Several programs are refused.
    static AddedLink linkIn(const QMimeData* data);

    /// Says what a drop does.
    void showFor(bool isProgram);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
};
