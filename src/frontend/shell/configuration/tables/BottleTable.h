#pragma once

#include <optional>

#include "shell/configuration/tables/EditableTable.h"
#include "shell/configuration/tables/TableRows.h"
#include "shell/configuration/tables/TableSync.h"

/// A table of one bottle. Each edit is sent at once; the last step can be undone. The list is read by load(),
/// and again whenever the bottle may have changed by itself; never while a cell is edited. Rows that the
/// service does not have yet stay. GUI thread.
class BottleTable : public EditableTable {
    Q_OBJECT
public:
    /// `listMethod` as for TableSync.
    BottleTable(const QString& listMethod, const QString& firstTitle, const QString& secondTitle,
                QWidget* parent = nullptr);

    void setBottle(const QString& bottle);
    const QString& bottle() const { return m_bottle; }
    /// Removes all rows; sends nothing.
    void clear();
    /// Ends in loaded(). False when edits are on their way; the list is read after them.
    bool load() { return m_sync->load(); }
    /// Why the list is not known: it could not be read, and no earlier one is shown. For the user.
    const QString& errorText() const { return m_errorText; }
    /// Takes the last step back, or what was done of it; does nothing when there is none.
    void undo();

    /// What the service has, or will have when the changes on their way are done.
    virtual TableRows sentRows() const = 0;

Q_SIGNALS:
    /// The list has come, or could not be read.
    void loaded();
    void refused(const QString& errorText);
    /// A step has been sent that undo() takes back.
    void undoable();
    /// There is no step to take back any more: the bottle has other rows than were shown, or refused it.
    void replaced();

protected:
    /// Replaces the rows that the service has; sends nothing.
    virtual void fill(const TableRows& rows) = 0;
    /// Sends one change.
    virtual void send(const TableChange& change) = 0;

    /// What the user does at once, such as to delete three rows.
    void step(const std::function<void()>& work);
    /// As TableSync::change().
    void change(const QString& name, const char* what, const TableSync::Call& call, bool isIdle = false);
    TableSync* sync() const { return m_sync; }

    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    void take(const TableRows& rows);
    /// The rows are new ones afterwards: place, selection and current cell are kept by name.
    void refill(const TableRows& list);
    void followBottle();

    TableSync* m_sync;
    QString m_bottle;
    QString m_errorText;
    bool m_isKnown = false;       ///< the list has come
    QVector<TableChange> m_undo;  ///< of the last step
    bool m_isInStep = false;
    bool m_hasRefused = false;           ///< the list is read again because of that
    std::optional<TableRows> m_waiting;  ///< until the editor closes
};
