#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QtTest>

#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

using namespace Fenk;

struct Channels {
    double red, green, blue;
};
Q_DECLARE_METATYPE(Channels)

QDBusArgument& operator<<(QDBusArgument& argument, const Channels& c) {
    argument.beginStructure();
    argument << c.red << c.green << c.blue;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Channels& c) {
    argument.beginStructure();
    argument >> c.red >> c.green >> c.blue;
    argument.endStructure();
    return argument;
}

/// A desktop portal with a few settings. It wraps a value twice when it is read, as real portals do.
class FakePortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    QHash<QString, QVariant> settings;

public Q_SLOTS:
    QDBusVariant Read(const QString& group, const QString& key) {
        return QDBusVariant(QVariant::fromValue(QDBusVariant(settings.value(group + '/' + key))));
    }

Q_SIGNALS:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);
};

class PortalTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void themeFollowsThePortal() {
        FakePortal portal;
        const QColor violet("#6A35C8");
        portal.settings["org.freedesktop.appearance/color-scheme"] = 1u;
        portal.settings["org.freedesktop.appearance/accent-color"] =
            QVariant::fromValue(Channels{violet.redF(), violet.greenF(), violet.blueF()});
        portal.settings["org.gnome.desktop.interface/enable-animations"] = false;
        QDBusConnection desktop =
            QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), "desktop");
        QVERIFY(desktop.registerObject("/org/freedesktop/portal/desktop", &portal,
                                       QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals));
        QVERIFY(desktop.registerService("org.freedesktop.portal.Desktop"));

        Theme* theme = Theme::instance();
        theme->watchSystem(QPalette(Qt::white));
        QVERIFY(!theme->isDark());
        QTRY_VERIFY(theme->isDark());
        QTRY_VERIFY(!theme->animationsEnabled());
        QTRY_COMPARE(theme->color(Theme::Light, Theme::Accent), violet);

        Q_EMIT portal.SettingChanged("org.freedesktop.appearance", "color-scheme", QDBusVariant(2u));
        QTRY_VERIFY(!theme->isDark());
        // No preference and unknown values leave what was; the value after them shows that they were heard.
        for (const QVariant& nothing : {QVariant("dark"), QVariant(0u), QVariant(7u)})
            Q_EMIT portal.SettingChanged("org.freedesktop.appearance", "color-scheme", QDBusVariant(nothing));
        Q_EMIT portal.SettingChanged("org.freedesktop.appearance", "accent-color",
                                     QDBusVariant(QVariant::fromValue(Channels{-1, 2, 0})));
        QTRY_VERIFY(theme->color(Theme::Light, Theme::Accent) != violet);
        QVERIFY(!theme->isDark());

        theme->setColorType(Theme::Dark);
        Q_EMIT portal.SettingChanged("org.freedesktop.appearance", "color-scheme", QDBusVariant(2u));
        Q_EMIT portal.SettingChanged("org.gnome.desktop.interface", "enable-animations", QDBusVariant(true));
        QTRY_VERIFY(theme->animationsEnabled());
        QVERIFY(theme->isDark());
    }
};

int main(int argc, char** argv) {
    const TestSupport::TestHome home;
    const TestSupport::PrivateBus bus;
    Application app(argc, argv);
    qDBusRegisterMetaType<Channels>();
    PortalTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "PortalTest.moc"
