#pragma once

#include <QColor>
#include <QDBusVariant>
#include <QObject>
#include <optional>

class QDBusPendingCallWatcher;

namespace Fenk {

/// Reads the appearance settings of the desktop portal asynchronously and follows their changes. Without a
/// session bus or a portal it emits nothing, and the current appearance stays. Owned by Theme.
class SystemAppearance : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    void start();

    /// The portal's value for the colour scheme: 1 dark, 2 light; anything else is no preference.
    static std::optional<bool> darkFrom(const QVariant& value);
    /// Three channels from 0 to 1; an invalid colour (no accent) for anything else.
    static QColor accentFrom(const QVariant& value);

Q_SIGNALS:
    void darkPreferred(bool dark);
    void accentChosen(const QColor& accent);
    void animationsPreferred(bool wanted);

private Q_SLOTS:
    void onSettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void read(const QString& group, const QString& key);
    void apply(const QString& group, const QString& key, const QVariant& value);
};

}  // namespace Fenk
