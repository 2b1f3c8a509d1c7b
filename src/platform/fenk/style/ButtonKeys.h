#pragma once

#include <QObject>

namespace Fenk {

/// Return and Enter press the button that has the focus, in every window; Qt does that in dialogs only, and
/// for push buttons. Check boxes and radio buttons stay as they are: there Return is the dialog's. Owned by
/// Style; one for the process.
class ButtonKeys : public QObject {
    Q_OBJECT
public:
    explicit ButtonKeys(QObject* parent = nullptr);

    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace Fenk
