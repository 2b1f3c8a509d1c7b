#pragma once

#include <QComboBox>

struct EmulatorsInfo;

/// The emulators for x86 code on this machine; the data of an item is the emulator's name. Drops its list on
/// a click, and chooses nothing by the wheel, which is meant for the page.
class EmulatorComboBox : public QComboBox {
    Q_OBJECT
public:
    explicit EmulatorComboBox(QWidget* parent = nullptr);

    /// Shows these, and the bottle's one as chosen, without a signal.
    void fill(const EmulatorsInfo& emulators);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
};
