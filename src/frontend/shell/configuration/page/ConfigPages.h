#pragma once

#include <QWidget>

class QButtonGroup;
class QHBoxLayout;
class QStackedWidget;

namespace Fenk {
class SearchEdit;
}

/// The right side of the configuration window above the log: heading, search field, the box of buttons that
/// chooses a page, and the page. Pages have the numbers that links use; those that are missing have no
/// button.
class ConfigPages : public QWidget {
    Q_OBJECT
public:
    explicit ConfigPages(QWidget* parent = nullptr);

    void addPage(int number, const QString& title, QWidget* page);
    /// Does nothing for a page that is not there.
    void showPage(int number);
    void focusSearch();

Q_SIGNALS:
    void pageShown(int number);
    void searched(const QString& text);

private:
    QButtonGroup* m_buttons;
    QHBoxLayout* m_row;
    QStackedWidget* m_pages;
    Fenk::SearchEdit* m_search;
};
