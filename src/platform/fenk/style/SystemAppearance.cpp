#include "fenk/style/SystemAppearance.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace Fenk {

namespace {

const char Service[] = "org.freedesktop.portal.Desktop";
const char ObjectPath[] = "/org/freedesktop/portal/desktop";
const char Interface[] = "org.freedesktop.portal.Settings";
const char Appearance[] = "org.freedesktop.appearance";
const char DesktopInterface[] = "org.gnome.desktop.interface";

/// The method call wraps the value once more than the signal.
QVariant unwrapped(QVariant value) {
    while (value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

}  // namespace

std::optional<bool> SystemAppearance::darkFrom(const QVariant& value) {
    bool ok = false;
    const uint scheme = value.toUInt(&ok);
    if (!ok || (scheme != 1 && scheme != 2))
        return std::nullopt;
    return scheme == 1;
}

QColor SystemAppearance::accentFrom(const QVariant& value) {
    if (value.userType() != qMetaTypeId<QDBusArgument>())
        return {};
    const QDBusArgument argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != "(ddd)")
        return {};
    double red = -1, green = -1, blue = -1;
    argument.beginStructure();
    argument >> red >> green >> blue;
    argument.endStructure();
    const auto inside = [](double channel) { return channel >= 0 && channel <= 1; };
    return inside(red) && inside(green) && inside(blue) ? QColor::fromRgbF(red, green, blue) : QColor();
}

void SystemAppearance::start() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(Service, ObjectPath, Interface, "SettingChanged", this,
                SLOT(onSettingChanged(QString, QString, QDBusVariant)));
    read(Appearance, "color-scheme");
    read(Appearance, "accent-color");
    read(DesktopInterface, "enable-animations");
}

void SystemAppearance::read(const QString& group, const QString& key) {
    QDBusMessage call = QDBusMessage::createMethodCall(Service, ObjectPath, Interface, "Read");
    call << group << key;
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, group, key](QDBusPendingCallWatcher* done) {
                const QDBusPendingReply<QDBusVariant> reply = *done;
                if (reply.isValid())
                    apply(group, key, reply.value().variant());
                done->deleteLater();
            });
}

void SystemAppearance::onSettingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    apply(group, key, value.variant());
}

void SystemAppearance::apply(const QString& group, const QString& key, const QVariant& value) {
    const QVariant plain = unwrapped(value);
    if (group == Appearance && key == "color-scheme") {
        if (const auto dark = darkFrom(plain))
            Q_EMIT darkPreferred(*dark);
    } else if (group == Appearance && key == "accent-color") {
        Q_EMIT accentChosen(accentFrom(plain));
    } else if (group == DesktopInterface && key == "enable-animations" && plain.type() == QVariant::Bool) {
        Q_EMIT animationsPreferred(plain.toBool());
    }
}

}  // namespace Fenk
