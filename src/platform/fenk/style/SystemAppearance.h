#pragma once

#include <QColor>
#include <QDBusVariant>
#include <QObject>
#include <optional>

class QDBusPendingCallWatcher;

namespace Fenk {

/// What the desktop's settings portal says about looks, asked without waiting and followed as it changes.
/// Without a session bus or a portal it stays silent, and whoever listens keeps what it had. Owned by Theme.
class SystemAppearance : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    void start();

    /// The portal's words for its colour scheme: 1 dark, 2 light; anything else is no preference.
    static std::optional<bool> darkFrom(const QVariant& value);
    /// Three channels from 0 to 1; anything outside means that there is no accent.
    static QColor accentFrom(const QVariant& value);

Q_SIGNALS:
    void darkPreferred(bool dark);
    void accentChosen(const QColor& accent);
    void animationsPreferred(bool wanted);

private Q_SLOTS:
    void onSettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void read(const QString& group, const QString& key);
    void take(const QString& group, const QString& key, const QVariant& value);
};

}  // namespace Fenk
