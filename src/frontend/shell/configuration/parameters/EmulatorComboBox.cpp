#include "shell/configuration/parameters/EmulatorComboBox.h"

#include <QMouseEvent>
#include <QSignalBlocker>

#include "backend/EmulatorsInfo.h"

EmulatorComboBox::EmulatorComboBox(QWidget* parent) : QComboBox(parent) {
    setFocusPolicy(Qt::StrongFocus);
}

void EmulatorComboBox::fill(const EmulatorsInfo& emulators) {
    const QSignalBlocker quiet(this);
    clear();
    for (auto it = emulators.installed.begin(); it != emulators.installed.end(); ++it)
        addItem(it.key(), it.key());
    setCurrentIndex(emulators.installed.contains(emulators.usingName) ? findData(emulators.usingName) : -1);
}

void EmulatorComboBox::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && count() > 0)
        showPopup();
    else
        event->ignore();
}

void EmulatorComboBox::wheelEvent(QWheelEvent* event) {
    event->ignore();
}
