#pragma once

#include <QHash>
#include <QListView>

class BottleDependencies;
class QJsonObject;
class QSortFilterProxyModel;
class QStandardItem;
class QStandardItemModel;

/// The components that can be installed into a bottle, a row each: which are there, under way or failed, and
/// a button that installs them. Reads the catalogue when it is made. The rows show what BottleDependencies
/// knows.
class ComponentsListView : public QListView {
    Q_OBJECT
public:
    explicit ComponentsListView(QWidget* parent = nullptr);

    BottleDependencies* dependencies() const { return m_dependencies; }
    void setBottle(const QString& bottle);
    /// Marks what the bottle has. Call again when its record has changed.
    void load(const QStringList& installed);

    bool hasRows() const { return !m_rows.isEmpty(); }
    QStringList names() const { return m_rows.keys(); }
    QString currentName() const;
    QString descriptionOf(const QString& name) const;
    /// Names of the components that are installed before this one, as the catalogue has them.
    QStringList needsOf(const QString& name) const { return m_needs.value(name); }
    /// Goes to the row with this name, or else to the first row.
    void select(const QString& name);

Q_SIGNALS:
    /// A component has been asked for (downloading), or was under way already.
    void startSetup(const QString& componentName, bool downloading = false);
    void setupDone();
    void currentChangedTo(const QString& name);
    /// A row or what it stands for has changed.
    void rowChanged(const QString& name);

public Q_SLOTS:
    /// Shows the rows whose name, description or DLLs contain the text.
    void filter(const QString& str);
    /// The object has "status", a text for the row; with "failed" a "description" may say why.
    void updateComponentState(const QString& name, const QJsonObject& statusObject);
    /// Does what the button of the current row says.
    void onDownloadComponents();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    void makeRows();
    void refreshRow(const QString& name);
    void setStatus(QStandardItem* item, const QString& text, int kind);

    BottleDependencies* m_dependencies;
    QStandardItemModel* m_items;
    QSortFilterProxyModel* m_proxy;
    QHash<QString, QStandardItem*> m_rows;
    QHash<QString, QStringList> m_needs;
};
