#include "shell/configuration/parameters/WineChannerCombobox.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QWheelEvent>

#include "shell/configuration/parameters/LogChannels.h"

WineChannerCombobox::WineChannerCombobox(QWidget* parent) : QComboBox(parent) {
    setEditable(true);
    setFocusPolicy(Qt::StrongFocus);
    setInsertPolicy(NoInsert);
    setCompleter(nullptr);  // it would complete the names of entries, which are no channels
    for (int entry = 0; entry < LogChannels::count(); ++entry) {
        addItem(tr(LogChannels::name(entry)));
        setItemData(entry, LogChannels::channels(entry), Qt::ToolTipRole);
    }
    setMaxVisibleItems(LogChannels::count());
    setCurrentIndex(-1);
    connect(this, &QComboBox::editTextChanged, this, &WineChannerCombobox::textChanged);
    connect(this, qOverload<int>(&QComboBox::activated), this, &WineChannerCombobox::addEntry);
}

void WineChannerCombobox::setChannels(const QString& channels) {
    m_channels = channels;
    setCurrentIndex(-1);
    setEditText(channels);
}

QString WineChannerCombobox::channels() const {
    return currentText();
}

void WineChannerCombobox::showPopup() {
    m_channels = currentText();
    QComboBox::showPopup();
}

void WineChannerCombobox::addEntry(int entry) {
    setChannels(LogChannels::withEntry(m_channels, entry));
}

// Without the list in sight a key or the wheel would add channels, since both choose entries.
void WineChannerCombobox::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Down:
            showPopup();
            break;
        case Qt::Key_Up:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            event->ignore();
            break;
        default:
            QComboBox::keyPressEvent(event);
    }
}

void WineChannerCombobox::wheelEvent(QWheelEvent* event) {
    event->ignore();
}
