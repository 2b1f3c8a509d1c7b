#include "shell/configuration/tables/ComboCellDelegate.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

#include "fenk/style/Paint.h"
#include "shell/configuration/tables/EditableTable.h"

using namespace Fenk;

namespace {

/// Whether a closed combo box would take another entry for the key, as if the user had chosen it.
bool stepsThroughEntries(const QKeyEvent& key, bool isEditable) {
    switch (key.key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            return true;
        case Qt::Key_Home:
        case Qt::Key_End:
            return !isEditable;
        default:
            return !isEditable && !key.text().isEmpty() && key.text().at(0).isPrint();
    }
}

}  // namespace

QWidget* ComboCellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                         const QModelIndex& index) const {
    auto* combo = new QComboBox(parent);
    combo->setFocusPolicy(Qt::StrongFocus);
    prepare(combo, index.column());
    connect(combo, qOverload<int>(&QComboBox::activated), this, [this, combo] {
        auto* self = const_cast<ComboCellDelegate*>(this);
        Q_EMIT self->commitData(combo);
        Q_EMIT self->closeEditor(combo);
    });
    // There is nothing to do but to choose.
    if (!combo->isEditable())
        QTimer::singleShot(0, combo, &QComboBox::showPopup);
    return combo;
}

bool ComboCellDelegate::eventFilter(QObject* editor, QEvent* event) {
    auto* combo = qobject_cast<QComboBox*>(editor);
    if (combo && event->type() == QEvent::Wheel)
        return true;
    if (combo && event->type() == QEvent::KeyPress &&
        stepsThroughEntries(*static_cast<QKeyEvent*>(event), combo->isEditable())) {
        combo->showPopup();
        return true;
    }
    return QStyledItemDelegate::eventFilter(editor, event);
}

void ComboCellDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    auto* combo = static_cast<QComboBox*>(editor);
    const QString text = index.data().toString();
    combo->setCurrentIndex(combo->findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive));
    if (combo->isEditable()) {
        combo->setEditText(text);
        combo->lineEdit()->selectAll();
    }
}

void ComboCellDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                     const QModelIndex& index) const {
    model->setData(index, static_cast<QComboBox*>(editor)->currentText().trimmed());
}

void ComboCellDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                             const QModelIndex&) const {
    const QRectF room = QRectF(option.rect).adjusted(Tokens::Space4, 0, -Tokens::Space4, 0);
    editor->setGeometry(Paint::centred(room, room.width(), Tokens::ControlHeight).toRect());
}

/// The whole row is hovered.
void ComboCellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const auto* table = qobject_cast<const EditableTable*>(option->widget);
    option->state.setFlag(QStyle::State_MouseOver, table && table->hoveredRow() == index.row());
}

void ComboCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index);
    QStyleOptionViewItem cell(option);
    if (Paint::keyboardFocus(&cell))
        Paint::ring(painter, QRectF(option.rect).adjusted(2, 2, -2, -2), Tokens::RadiusControl);
}
