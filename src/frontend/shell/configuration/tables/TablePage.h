#pragma once

#include <QWidget>

#include "shell/configuration/rules/SearchedPage.h"

class BottleTable;
class ListPlaceholder;
class QHBoxLayout;
class QStackedWidget;

namespace Fenk {
class IconButton;
}

/// A page with one table: a tip and buttons above, the table in a frame, and while it is empty a placeholder
/// with the same action as the button that adds a row. While the list could not be read, it offers to read it
/// again and nothing else. Shows what the service has refused.
class TablePage : public QWidget, public SearchedPage {
    Q_OBJECT
public:
    struct Texts {
        QString tip;
        QString add;
        QString empty;
    };
    /// `name` begins the names of area, buttons and frame; `icon` is that of the placeholder.
    TablePage(const QString& name, const QString& icon, const Texts& texts, BottleTable* table,
              QWidget* parent = nullptr);

    BottleTable* table() const { return m_table; }
    /// All rows stay when it is the page itself that matches.
    int filter(const QString& text) override;

Q_SIGNALS:
    void addRequested();

protected:
    /// Adds a button before the one that adds rows.
    void addTool(QWidget* button);
    void showError(const QString& errorText);

    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void refresh();

    BottleTable* m_table;
    QString m_words;  ///< what the page itself says
    QString m_filter;
    Fenk::IconButton* m_add;
    QHBoxLayout* m_tools;
    QStackedWidget* m_stack;
    ListPlaceholder* m_empty;
    ListPlaceholder* m_failed;
    QWidgetList m_buttons;  ///< for a list that is known
};
