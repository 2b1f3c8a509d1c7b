#include "shell/configuration/tables/BottleTable.h"

#include <QScrollBar>
#include <QStandardItemModel>

#include "backend/BottlesConfig.h"

BottleTable::BottleTable(const QString& listMethod, const QString& firstTitle, const QString& secondTitle,
                         QWidget* parent)
    : EditableTable(firstTitle, secondTitle, parent), m_sync(new TableSync(listMethod, this)) {
    connect(m_sync, &TableSync::listed, this, [this](const QJsonObject& list) {
        m_isKnown = true;
        m_errorText.clear();
        take(TableDifference::rowsOf(list));
        Q_EMIT loaded();
    });
    connect(m_sync, &TableSync::failed, this, [this](const QString& errorText) {
        if (!m_isKnown)
            m_errorText = errorText;
        Q_EMIT loaded();
    });
    connect(m_sync, &TableSync::refused, this, [this](const QString& errorText) {
        m_hasRefused = true;
        Q_EMIT refused(errorText);
    });
    followBottle();
}

void BottleTable::setBottle(const QString& bottle) {
    m_bottle = bottle;
    m_isKnown = false;
    m_errorText.clear();
}

/// Components bring overrides and fonts with them.
void BottleTable::followBottle() {
    const auto reload = [this](const QString& bottle) {
        if (bottle == m_bottle)
            load();
    };
    BottlesConfig* service = BottlesConfig::instance();
    connect(service, &BottlesConfig::component_setup_done, this, reload);
    connect(service, &BottlesConfig::dependencySetupDone, this, reload);
}

void BottleTable::clear() {
    rows()->removeRows(0, rows()->rowCount());
}

void BottleTable::take(const TableRows& rows) {
    m_waiting.reset();
    if (state() == EditingState) {
        m_waiting = rows;
        return;
    }
    const bool hasRefused = std::exchange(m_hasRefused, false);
    if (rows == sentRows())
        return;
    refill(rows);
    // Of a refused step what was done can be taken back.
    m_undo = hasRefused ? TableDifference::needed(rows, m_undo) : QVector<TableChange>();
    if (m_undo.isEmpty())
        Q_EMIT replaced();
}

void BottleTable::refill(const TableRows& list) {
    const auto nameOf = [this](int row) { return rows()->item(row, 0)->text(); };
    const QModelIndex current = currentIndex();
    const QString currentName = current.isValid() ? nameOf(current.row()) : QString();
    const int column = current.column(), place = verticalScrollBar()->value();
    QStringList selected;
    for (const int row : selectedRows())
        selected << nameOf(row);
    setFilling(true);
    fill(list);
    setFilling(false);
    clearSelection();
    for (int row = 0; row < rows()->rowCount(); ++row) {
        if (selected.contains(nameOf(row)))
            selectionModel()->select(rows()->index(row, 0),
                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
        if (column >= 0 && nameOf(row) == currentName)
            selectionModel()->setCurrentIndex(rows()->index(row, column), QItemSelectionModel::NoUpdate);
    }
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(place);
}

void BottleTable::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    EditableTable::closeEditor(editor, hint);
    if (m_waiting && state() != EditingState)
        take(TableRows(*m_waiting));
}

void BottleTable::step(const std::function<void()>& work) {
    if (m_isInStep) {
        work();
        return;
    }
    m_isInStep = true;
    const TableRows before = sentRows();
    work();
    m_isInStep = false;
    const QVector<TableChange> undo = TableDifference::between(sentRows(), before);
    if (undo.isEmpty())
        return;
    m_undo = undo;
    Q_EMIT undoable();
}

void BottleTable::undo() {
    TableRows rows = sentRows();
    for (const TableChange& change : TableDifference::needed(rows, std::exchange(m_undo, {}))) {
        send(change);
        TableDifference::apply(change, &rows);
    }
    if (rows != sentRows())
        refill(rows);
}

void BottleTable::change(const QString& name, const char* what, const TableSync::Call& call, bool isIdle) {
    m_sync->change(name, what, call, isIdle);
    // A list that waits for the editor is older than this change.
    if (std::exchange(m_waiting, std::nullopt))
        load();
}
