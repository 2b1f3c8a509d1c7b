#include "store/view/RefreshWidget.h"

#include "fenk/style/Theme.h"

RefreshWidget::RefreshWidget(QWidget* parent)
    : ListPlaceholder(Fenk::Theme::icon("fenk-warning"),
                      tr("The applications could not be fetched from the store."), tr("Retry"), parent) {
    setObjectName("store_refresh");
    setDetail(tr("Check the network connection, then try again."));
}
