#include "shell/configuration/fonts/FontReplacementListView.h"

#include <QDebug>
#include <QFontDialog>
#include <QGuiApplication>
#include <QMenu>
#include <QStandardItemModel>

#include "backend/BottlesConfig.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Theme.h"
#include "fenk/style/WidgetLook.h"
#include "shell/configuration/fonts/FontNames.h"
#include "shell/configuration/fonts/FontReplacementItemDelegate.h"

namespace {
/// What the service has in this row and column; empty for a row that it does not have.
constexpr int SentRole = Qt::UserRole + 1;

constexpr QSize FontDialogSize(640, 560);

/// Wine reads the names of fonts without case.
bool isSame(const QString& font, const QString& other) {
    return font.compare(other, Qt::CaseInsensitive) == 0;
}

/// A replacement, with a remark when this machine does not have the font: the bottle itself or its Wine may.
class ReplacementItem : public QStandardItem {
public:
    ReplacementItem(const QString& family, const QSet<QString>* families)
        : QStandardItem(family), m_families(families) {}

    QVariant data(int role) const override {
        const bool isRemark =
            role == Qt::DecorationRole || role == Qt::ToolTipRole || role == Qt::AccessibleDescriptionRole;
        if (!isRemark || text().isEmpty() || m_families->contains(text().toLower()))
            return QStandardItem::data(role);
        if (role == Qt::DecorationRole)
            return Fenk::Theme::icon("fenk-info");
        return Fenk::plainToolTip(
            FontReplacementListView::tr(
                "%1 is not among the fonts of this machine. It is used only if the container has it.")
                .arg(text()));
    }

private:
    const QSet<QString>* m_families;
};

}  // namespace

FontReplacementListView::FontReplacementListView(QWidget* parent)
    : BottleTable("listFontReplacements", tr("Windows font"), tr("Replacement"), parent) {
    setObjectName("fontreplacement_listview");
    setAccessibleName(tr("Font Replacement"));
    readFamilies();
    connect(qApp, &QGuiApplication::fontDatabaseChanged, this, &FontReplacementListView::readFamilies);
    auto* delegate = new FontReplacementItemDelegate(this);
    setItemDelegate(delegate);
    connect(delegate, &FontReplacementItemDelegate::edited, this,
            [this](const QModelIndex& index) { sendRow(index.row()); });
    sync()->setList([this](QObject* context, const TableSync::Handler& handler) {
        BottlesConfig::instance()->listFontReplacements(bottle(), context, handler);
    });
    connect(sync(), &TableSync::listed, this, [](const QJsonObject& list) {
        for (auto it = list.begin(); it != list.end(); ++it)
            qInfo() << "load font replacement: " << it.key() << "->" << it.value().toString();
    });
}

void FontReplacementListView::readFamilies() {
    m_families.clear();
    for (const QString& family : FontNames::ofSystem())
        m_families.insert(family.toLower());
    viewport()->update();
}

QString FontReplacementListView::text(int row, int column) const {
    return rows()->item(row, column)->text();
}

QString FontReplacementListView::sentFont(int row) const {
    return rows()->item(row, 0)->data(SentRole).toString();
}

void FontReplacementListView::setSent(int row) {
    for (int column : {0, 1})
        rows()->item(row, column)->setData(text(row, column), SentRole);
}

TableRows FontReplacementListView::sentRows() const {
    TableRows sent;
    for (int row = 0; row < rows()->rowCount(); ++row) {
        if (!sentFont(row).isEmpty())
            sent.insert(sentFont(row), rows()->item(row, 1)->data(SentRole).toString());
    }
    return sent;
}

void FontReplacementListView::addNewReplacements(const QString& from, const QString& to, bool sync) {
    rows()->insertRow(0, {new QStandardItem(from), new ReplacementItem(to, &m_families)});
    if (!sync)
        setSent(0);
    else if (from.isEmpty() && to.isEmpty())
        editRow(0);
    else
        sendRow(0);
}

void FontReplacementListView::fill(const TableRows& list) {
    for (int row = rows()->rowCount() - 1; row >= 0; --row) {
        if (!sentFont(row).isEmpty())
            rows()->removeRow(row);
    }
    for (auto it = list.begin(); it != list.end(); ++it)
        addNewReplacements(it.key(), it.value(), false);
}

void FontReplacementListView::sendRow(int row) {
    const QString font = text(row, 0), replacement = text(row, 1), oldFont = sentFont(row);
    if (font.isEmpty() || replacement.isEmpty()) {
        // The service keeps what it has.
        for (int column = 0; column < 2 && !oldFont.isEmpty(); ++column)
            rows()->item(row, column)->setText(rows()->item(row, column)->data(SentRole).toString());
        return;
    }
    step([&] {
        const TableRows before = sentRows();
        const QPersistentModelIndex current = rows()->index(row, 0);
        set(font, replacement);
        setSent(row);
        removeSent(font, row);
        // Another font in this row replaces one more; it does not end the replacement of the old one.
        if (before.contains(oldFont) && !isSame(oldFont, font)) {
            rows()->insertRow(current.row() + 1, {new QStandardItem(oldFont),
                                                  new ReplacementItem(before.value(oldFont), &m_families)});
            setSent(current.row() + 1);
        }
    });
}

void FontReplacementListView::set(const QString& font, const QString& replacement) {
    change(font, "the replacement of the font",
           [this, font, replacement](QObject* context, const TableSync::Handler& handler) {
               BottlesConfig::instance()->addFontReplacements(bottle(), font, replacement, context, handler);
           });
}

void FontReplacementListView::remove(const QString& font, bool isSent) {
    change(
        font, "the removal of the replacement of the font",
        [this, font](QObject* context, const TableSync::Handler& handler) {
            BottlesConfig::instance()->removeFontReplacement(bottle(), font, context, handler);
        },
        !isSent);
}

void FontReplacementListView::send(const TableChange& change) {
    if (change.isRemoved)
        remove(change.name, true);
    else
        set(change.name, change.value);
}

void FontReplacementListView::addMenuEntries(QMenu* menu) {
    const bool hasRows = !selectedRows().isEmpty();
    if (hasRows)
        menu->addAction(tr("To..."), this, &FontReplacementListView::chooseReplacement);
    menu->addAction(tr("Add default replacements"), this, &FontReplacementListView::addDefaults);
    if (!hasRows)
        return;
    menu->addSeparator();
    Fenk::setDestructive(
        menu->addAction(tr("Delete selected"), this, &FontReplacementListView::deleteSelected));
}

void FontReplacementListView::deleteSelected() {
    const QList<QPersistentModelIndex> selected = selectedCells(0);
    step([&] {
        for (int i = selected.size() - 1; i >= 0; --i) {
            if (!selected[i].isValid())
                continue;
            const QString font = text(selected[i].row(), 0);
            const QStringList sent = sentRows().keys();
            const bool isSent = sent.contains(font, Qt::CaseInsensitive);
            rows()->removeRow(selected[i].row());
            removeSent(font, -1);
            remove(font, isSent);
        }
    });
}

QList<QPersistentModelIndex> FontReplacementListView::selectedCells(int column) const {
    QList<QPersistentModelIndex> cells;
    for (const int row : selectedRows())
        cells << rows()->index(row, column);
    return cells;
}

void FontReplacementListView::removeSent(const QString& font, int except) {
    for (int row = rows()->rowCount() - 1; row >= 0; --row) {
        if (row != except && !font.isEmpty() && isSame(sentFont(row), font))
            rows()->removeRow(row);
    }
}

int FontReplacementListView::rowOf(const QString& font) const {
    const QList<QStandardItem*> items = rows()->findItems(font, Qt::MatchFixedString, 0);
    return items.isEmpty() ? -1 : items.first()->row();
}

/// For the rows that are selected now, by name should the list be read again meanwhile.
void FontReplacementListView::chooseReplacement() {
    const QList<QPersistentModelIndex> cells = selectedCells(1);
    if (cells.isEmpty())
        return;
    QStringList fonts;
    for (const QPersistentModelIndex& cell : cells)
        fonts << text(cell.row(), 0);
    auto* dialog = new QFontDialog(QFont(cells.first().data().toString()), this);
    dialog->setObjectName("replacement_dialog");
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Choose the replacement"));
    dialog->resize(FontDialogSize);
    connect(dialog, &QFontDialog::fontSelected, this, [this, cells, fonts](const QFont& font) {
        QList<QPersistentModelIndex> now;
        for (int i = 0; i < cells.size(); ++i)
            now << (cells[i].isValid() ? cells[i] : QPersistentModelIndex(rows()->index(rowOf(fonts[i]), 1)));
        replaceBy(now, FontNames::withoutFoundry(font.family()));
    });
    dialog->open();
}

void FontReplacementListView::replaceBy(const QList<QPersistentModelIndex>& cells, const QString& family) {
    step([&] {
        for (const QPersistentModelIndex& cell : cells) {
            // Of two rows of one font the first replaces the other.
            if (rows()->setData(cell, family))
                sendRow(cell.row());
        }
    });
}

void FontReplacementListView::addDefaults() {
    step([this] {
        for (const QString& font : FontNames::replacedByDefault()) {
            if (rowOf(font) < 0)
                addNewReplacements(font, FontNames::defaultReplacement(), true);
        }
    });
}
