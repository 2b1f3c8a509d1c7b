#pragma once

#include <QVector>
#include <QWidget>

class QButtonGroup;
class QHBoxLayout;
class QStackedWidget;

namespace Fenk {
class Label;
class SearchEdit;
}  // namespace Fenk

/// The right side of the configuration window above the log: heading, search field, the box of buttons that
/// chooses a page, and the page. Pages have the numbers that links use; those that are missing have no
/// button. Each is a SearchedPage. The search looks through all pages and shows the first one that has what
/// is searched for, the current one if it has.
class ConfigPages : public QWidget {
    Q_OBJECT
public:
    explicit ConfigPages(QWidget* parent = nullptr);

    void addPage(int number, const QString& title, QWidget* page);
    /// Does nothing for a page that is not there.
    void showPage(int number);
    /// Null for a page that is not there.
    QWidget* page(int number) const;
    void focusSearch();
    /// Shows the page with only what matches the text. Does nothing for a page that is not there.
    void showMatches(int number, const QString& text);

Q_SIGNALS:
    void pageShown(int number);

private:
    void search(const QString& text);

    QButtonGroup* m_buttons;
    QHBoxLayout* m_row;
    QStackedWidget* m_pages;
    Fenk::SearchEdit* m_search;
    Fenk::Label* m_nothing;
    QVector<QWidget*> m_empty;  ///< pages without what is searched for
};
