#pragma once

#include <QWidget>

class PackageListing;
class QPushButton;
class QTreeWidget;

namespace Fenk {
class Label;
class Spinner;
}  // namespace Fenk

/// What goes along in a package, with sizes, and what stays at home: two lines, and a list to unfold. Shows
/// the state of its listing, which can be cancelled and asked for again.
class PackageContentsWidget : public QWidget {
    Q_OBJECT

public:
    explicit PackageContentsWidget(QWidget* parent = nullptr);

    PackageListing* listing() const { return m_listing; }

Q_SIGNALS:
    /// It needs another height.
    void resized();

private:
    void refresh();
    void fillTree();
    void onClicked();

    PackageListing* m_listing;
    Fenk::Label* m_size;
    Fenk::Label* m_note;
    Fenk::Spinner* m_spinner;
    QPushButton* m_button;
    QTreeWidget* m_tree;
    bool m_isUnfolded = false;
};
