#pragma once

#include <QWidget>

class ComponentsListView;
class QPushButton;
class QVBoxLayout;

namespace Fenk {
class Label;
}

/// Below the list: what the current component is, what is installed before it, which files it comes from and
/// why it has failed, with the button of its row. Where a file cannot be had, the user can choose it.
class ComponentDetails : public QWidget {
    Q_OBJECT
public:
    explicit ComponentDetails(ComponentsListView* list, QWidget* parent = nullptr);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void refresh();
    void shareLines();
    QStringList missingNeedsOf(const QString& name) const;
    QString factsText(const QString& name) const;
    void chooseFile();

    ComponentsListView* m_list;
    QVBoxLayout* m_words;
    Fenk::Label* m_title;
    Fenk::Label* m_text;
    Fenk::Label* m_reason;
    QPushButton* m_choose;
    QPushButton* m_button;
};
