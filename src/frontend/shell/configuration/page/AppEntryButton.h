#pragma once

#include <QAbstractButton>

#include "shell/configuration/rules/EntryList.h"

/// One program of the bottle in the column on the left: icon, name, and a dot while it runs. Checked while it
/// is current. Narrow columns show the icon only.
class AppEntryButton : public QAbstractButton {
    Q_OBJECT
public:
    explicit AppEntryButton(const QString& id, QWidget* parent = nullptr);

    QString id() const { return m_id; }
    void setEntry(const ProgramEntry& entry);
    void setRunning(bool running);
    void setNarrow(bool narrow);

    QSize sizeHint() const override;

Q_SIGNALS:
    void menuRequested(const QPoint& at);

protected:
    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void updateName();

    const QString m_id;
    QString m_icon;
    QString m_name;
    bool m_isRunning = false;
    bool m_isNarrow = false;
};
