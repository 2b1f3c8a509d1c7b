#pragma once

#include <QWidget>

#include "shell/configuration/rules/SearchedPage.h"

class ComponentsListView;
class ListPlaceholder;
class QJsonObject;
class QStackedWidget;

namespace Fenk {
class SearchEdit;
}

/// The page that installs the components that programs need: a search, the list, what the current component
/// is, and what is being installed. The owner opens the dialogs for archives of components.
class ComponentsPage : public QWidget, public SearchedPage {
    Q_OBJECT
public:
    explicit ComponentsPage(QWidget* parent = nullptr);

    /// A bottle by its name and its record. Call again with each new record.
    void setBottle(const QString& bottle, const QJsonObject& record);
    /// Also goes to the component of that name.
    int filter(const QString& text) override;

    ComponentsListView* list() const { return m_list; }

Q_SIGNALS:
    void importRequested();
    void exportRequested();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeHead();
    void search(const QString& text);
    void askAboutPrograms(const QStringList& programs);
    void describe();

    ComponentsListView* m_list;
    Fenk::SearchEdit* m_search;
    QStackedWidget* m_area;
    ListPlaceholder* m_nothing;
};
