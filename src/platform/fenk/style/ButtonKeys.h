#pragma once

#include <QObject>

namespace Fenk {

/// Lets Return and Enter press the focused button in every window; Qt does so in dialogs only, and for push
/// buttons only. Check boxes and radio buttons are excluded: Return belongs to the dialog there. Owned by
/// Style; one per process.
class ButtonKeys : public QObject {
    Q_OBJECT
public:
    explicit ButtonKeys(QObject* parent = nullptr);

    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace Fenk
