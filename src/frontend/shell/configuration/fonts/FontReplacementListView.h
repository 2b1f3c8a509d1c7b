#pragma once

#include <QSet>

#include "shell/configuration/tables/BottleTable.h"

/// The font replacements of a bottle: the font that programs ask for, and the one that Wine takes. A row
/// that lacks one of them has not been sent.
class FontReplacementListView : public BottleTable {
    Q_OBJECT
public:
    explicit FontReplacementListView(QWidget* parent = nullptr);

    TableRows sentRows() const override;

public Q_SLOTS:
    /// Adds a row at the top. With sync a full row is sent; without it the service has the row already. An
    /// empty row is edited at once.
    void addNewReplacements(const QString& from = QString(), const QString& to = QString(), bool sync = true);

protected:
    void fill(const TableRows& rows) override;
    void send(const TableChange& change) override;
    void addMenuEntries(QMenu* menu) override;
    void deleteSelected() override;
    void addRow() override { addNewReplacements(); }

private:
    void readFamilies();
    QString text(int row, int column) const;
    QString sentFont(int row) const;
    void setSent(int row);
    /// Sends the row if both cells are filled.
    void sendRow(int row);
    QList<QPersistentModelIndex> selectedCells(int column) const;
    /// The row that shows the font, whatever its case; -1 when there is none.
    int rowOf(const QString& font) const;
    /// Removes the rows in which the service has the font, but one.
    void removeSent(const QString& font, int except);
    void chooseReplacement();
    void replaceBy(const QList<QPersistentModelIndex>& cells, const QString& family);
    void addDefaults();
    void set(const QString& font, const QString& replacement);
    void remove(const QString& font, bool isSent);

    QSet<QString> m_families;  ///< of this machine, in lower case
};
