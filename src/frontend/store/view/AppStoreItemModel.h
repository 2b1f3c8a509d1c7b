#pragma once

#include <QCache>
#include <QHash>
#include <QIcon>
#include <QSet>
#include <QStandardItemModel>
#include <QUrl>

#include "store/view/AppStoreViewUtils.h"

/// The applications of one page of the store, a row each. Finds out by itself which of them are installed,
/// being installed or running, and loads their icons: one request for all rows with the same address, at most
/// 32 MiB of pictures at a time. A picture that had to go is null again, until requestIcon(); for one that
/// could not be had the loader's default stands, and requestIcon() tries again. GUI thread; waits for
/// nothing.
class AppStoreItemModel : public QStandardItemModel {
    Q_OBJECT
public:
    enum Role { AppRole = Qt::UserRole, InstalledRole, InstallingRole, RunningRole };

    explicit AppStoreItemModel(QObject* parent = nullptr);

    void appendApps(const QList<AppStoreViewUtils::StoreAppModelData>& apps);
    /// Takes back the requests for icons as well.
    void clearApps();
    AppStoreViewUtils::StoreAppModelData app(const QModelIndex& index) const;
    AppStoreViewUtils::ButtonState buttonState(const QModelIndex& index) const;
    /// Adds Qt::AccessibleTextRole, and the picture as Qt::DecorationRole.
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    void requestIcon(const QModelIndex& index);
    /// Looks again whether the application is installed; it is not being installed any more.
    void updateInstalled(const QModelIndex& index);
    /// Takes over whether the program runs.
    void updateRunning(const QModelIndex& index);

private:
    void onImageLoaded(const QUrl& url, const QPixmap& pixmap);
    void onAppSetuping(const QString& appId);
    void onSetupDone(const QString& appId);
    void lookUp(const QModelIndex& index, bool endsInstalling);
    void setProgram(const QModelIndex& index, const ProgramRef& program);
    template <class Fits>
    QList<QPersistentModelIndex> rows(Fits fits) const;

    mutable QCache<QUrl, QIcon> m_icons;  ///< costs in KiB
    QSet<QUrl> m_failed;
    QIcon m_defaultIcon;  ///< of all in m_failed; null before the first
    QHash<QUrl, QList<QPersistentModelIndex>> m_waiting;
};
