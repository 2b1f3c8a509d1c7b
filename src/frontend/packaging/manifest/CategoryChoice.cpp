#include "packaging/manifest/CategoryChoice.h"

#include <QAbstractItemView>
#include <QDebug>

#include "packaging/manifest/ManifestForm.h"
#include "store/client/StoreClient.h"
#include "store/client/VeskClientDefaultApi.h"

using ManifestFormRules::MaximumName;
using OpenAPI::VeskClientDefaultApi;

namespace {
constexpr int MaximumCategories = 200;
constexpr int CodeOk = 200;
}  // namespace

CategoryChoice::CategoryChoice(const QString& prompt, QWidget* parent) : QComboBox(parent) {
    addItem(prompt);
}

void CategoryChoice::fetch() {
    if (m_isFetching || count() > 1)
        return;
    m_isFetching = true;
    auto* api = makeStoreClient({}, this);
    connect(api, &VeskClientDefaultApi::getCategoriesSignal, this, &CategoryChoice::onFetched);
    connect(api, &VeskClientDefaultApi::getCategoriesSignalError, this,
            [this](const OpenAPI::VeskClientCategoriesResponse&, QNetworkReply::NetworkError,
                   const QString& errorText) { onFetchFailed(errorText); });
    connect(api, &VeskClientDefaultApi::allPendingRequestsCompleted, api, &QObject::deleteLater);
    api->getCategories();
}

void CategoryChoice::onFetched(const OpenAPI::VeskClientCategoriesResponse& summary) {
    if (summary.getCode() != CodeOk) {
        onFetchFailed(summary.getMsg());
        return;
    }
    m_isFetching = false;
    for (const auto& category : summary.getData().getList()) {
        const QString name = category.getName().simplified();
        if (!name.isEmpty() && name.size() <= MaximumName && count() <= MaximumCategories)
            addItem(name);
    }
    propose(m_proposed);
    if (view()->isVisible()) {  // it has the height of one row
        hidePopup();
        QComboBox::showPopup();
    }
}

void CategoryChoice::onFetchFailed(const QString& errorText) {
    m_isFetching = false;
    qWarning().noquote() << "failed to get categories:" << errorText.left(MaximumName).simplified();
    Q_EMIT fetchFailed();
}

void CategoryChoice::propose(const QString& category) {
    m_proposed = category;
    const int index = findText(category);
    if (currentIndex() == 0 && index > 0)
        setCurrentIndex(index);
}

QString CategoryChoice::category() const {
    return currentIndex() > 0 ? currentText() : QString();
}

void CategoryChoice::showPopup() {
    fetch();
    QComboBox::showPopup();
}
