#pragma once

#include <QElapsedTimer>
#include <QPersistentModelIndex>
#include <QWidget>

#include "store/view/AppStoreViewUtils.h"

class HotLabel;
class NetworkImageLabel;
class QIcon;
class RunStateButton;
class StarRating;

namespace Fenk {
class Label;
}

/// The card of one application: icon, name, stars, version, brief text and the button that installs, runs or
/// quits. Raised under the pointer and with the focus. Made by the delegate and used again for other rows.
/// Return and Space on the card press its button.
class StoreAppItemUI : public QWidget {
    Q_OBJECT
public:
    explicit StoreAppItemUI(QWidget* parent);

    /// The row that the card shows.
    void setIndex(const QModelIndex& index);
    QModelIndex index() const { return m_index; }

    void setApp(const OpenAPI::VeskClientAppInfo& app);
    /// A null icon shows the loading animation.
    void setIcon(const QIcon& icon);
    void setState(AppStoreViewUtils::ButtonState state);
    AppStoreViewUtils::ButtonState state() const { return m_state; }
    RunStateButton* button() const { return m_button; }
    /// Whether Tab reaches this card; a list has one such card.
    void setTabStop(bool on);
    /// True while the card or its button has the focus: it must not be used for another row.
    bool isBusy() const;

Q_SIGNALS:
    void pressed();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void press();
    void layOut();
    void updateNames();

    QPersistentModelIndex m_index;
    AppStoreViewUtils::ButtonState m_state = AppStoreViewUtils::ButtonState::Install;
    QString m_appName;
    qint64 m_iconKey = 0;
    QElapsedTimer m_sincePress;
    NetworkImageLabel* m_icon;
    Fenk::Label* m_name;
    HotLabel* m_hot;
    StarRating* m_stars;
    Fenk::Label* m_version;
    Fenk::Label* m_brief;
    RunStateButton* m_button;
};
