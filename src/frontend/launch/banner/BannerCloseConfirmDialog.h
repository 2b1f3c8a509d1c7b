#pragma once

#include "fenk/window/Dialog.h"

/// Asks whether what the banner stands for shall really be stopped. Modal over the banner, shown without
/// blocking and deleted when answered. Escape and the close button leave everything as it is.
class BannerCloseConfirmDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    enum Form { Starting, InstallingComponents };

    explicit BannerCloseConfirmDialog(QWidget* banner, Form form = Starting);

Q_SIGNALS:
    void confirmClose();  ///< stop it
};
