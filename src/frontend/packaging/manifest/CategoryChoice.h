#pragma once

#include <QComboBox>

namespace OpenAPI {
class VeskClientCategoriesResponse;
}

/// The store's categories to choose from. Shows a prompt, which is no choice, until they are here. A store
/// that cannot be reached is asked again when the list is opened. GUI thread.
class CategoryChoice : public QComboBox {
    Q_OBJECT
public:
    explicit CategoryChoice(const QString& prompt, QWidget* parent = nullptr);

    /// Asks the store unless the categories are here or being fetched.
    void fetch();
    /// Chooses the category of this name, also one that comes later, unless one has been chosen.
    void propose(const QString& category);
    /// Empty while none is chosen.
    QString category() const;

    void showPopup() override;

Q_SIGNALS:
    void fetchFailed();

private:
    void onFetched(const OpenAPI::VeskClientCategoriesResponse& summary);
    void onFetchFailed(const QString& errorText);

    QString m_proposed;
    bool m_isFetching = false;
};
