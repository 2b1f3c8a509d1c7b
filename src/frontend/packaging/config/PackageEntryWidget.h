#pragma once

#include <QWidget>

struct PackageEntry;
class QLabel;

namespace Fenk {
class IconButton;
class Label;
}  // namespace Fenk

/// A program in the list of a package: its icon, its name and what goes along with it. Programs from outside
/// of the bottle have buttons for their directory, for going alone and for being left out; one that is left
/// out has a button that takes it in again.
class PackageEntryWidget : public QWidget {
    Q_OBJECT

public:
    explicit PackageEntryWidget(const QString& id, QWidget* parent = nullptr);

    QString id() const { return m_id; }
    void setEntry(const PackageEntry& entry);

    /// What goes along with a program, in the user's language.
    static QString extent(const PackageEntry& entry);

Q_SIGNALS:
    void closed(PackageEntryWidget* widget);
    void added(const QString& id);
    void directoryWanted(const QString& id);
    void onlyExeWanted(const QString& id);

private:
    void showIcon();

    QString m_id;
    QString m_iconFile;
    QLabel* m_icon;
    Fenk::Label* m_name;
    Fenk::Label* m_extent;
    Fenk::IconButton* m_alone;
    Fenk::IconButton* m_directory;
    Fenk::IconButton* m_add;
    Fenk::IconButton* m_close;
};
