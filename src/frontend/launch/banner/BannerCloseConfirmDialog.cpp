#include "launch/banner/BannerCloseConfirmDialog.h"

#include <QAbstractButton>

namespace {

enum Answer { Close = 0, KeepWaiting = 1 };

}  // namespace

BannerCloseConfirmDialog::BannerCloseConfirmDialog(QWidget* banner, Form form) : Dialog(banner) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal);
    setAccessibleName("close_confirm_dialog");
    setTitle(tr("Close Running"));
    if (form == Starting) {
        setMessage(
            tr("The application is starting up, this process will continue for a short while,\n"
               "are you sure you want to close it now?"));
        addButton(tr("Close"));
        addButton(tr("Keep waiting"), true, ButtonRecommend);
    } else {
        setMessage(
            tr("To ensure that the application runs properly,\n"
               "please wait for the component download to complete!"));
        addButton(tr("Cancel Installation"));
        addButton(tr("Continue Installation"), true, ButtonRecommend);
    }
    for (const auto& [answer, name] : {std::pair(Close, "close_btn"), {KeepWaiting, "keep_waiting_btn"}}) {
        button(answer)->setAccessibleName(name);
        button(answer)->setAccessibleDescription(button(answer)->text());
    }
    connect(this, &Dialog::buttonClicked, this, [this](int index) {
        if (index == Close)
            Q_EMIT confirmClose();
    });
}
