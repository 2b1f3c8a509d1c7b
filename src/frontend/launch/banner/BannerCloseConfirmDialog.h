#pragma once

#include "fenk/window/Dialog.h"

/// Asks whether the launch or the installation of a banner shall be stopped. Modal over the banner, shown
/// without blocking, deleted when answered. Escape and the close button mean no.
class BannerCloseConfirmDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    enum Form { Starting, InstallingComponents };

    explicit BannerCloseConfirmDialog(QWidget* banner, Form form = Starting);

Q_SIGNALS:
    void confirmClose();  ///< the answer is to stop it
};
