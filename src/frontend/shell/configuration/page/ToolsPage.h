#pragma once

#include <QVector>
#include <QWidget>

#include "shell/configuration/rules/SearchedPage.h"

class BottlePrograms;
class QGridLayout;
class QPushButton;

namespace Fenk {
class Label;
}

/// The page with the tools of the bottle and of its current program.
class ToolsPage : public QWidget, public SearchedPage {
    Q_OBJECT
public:
    explicit ToolsPage(BottlePrograms* programs, QWidget* parent = nullptr);

    int filter(const QString& text) override;
    void setPackagingOffered(bool isOffered);

Q_SIGNALS:
    void importRequested();
    void resetRequested();
    void packagingRequested();
    void terminalRequested();

private:
    struct Group {
        Fenk::Label* title;
        QVector<QPushButton*> buttons;
    };

    void addGroup(const QString& title);
    QPushButton* addButton(const QString& text);

    QGridLayout* m_grid;
    QVector<Group> m_groups;
    QPushButton* m_package = nullptr;
    bool m_isPackagingOffered = false;
    QString m_filter;
};
