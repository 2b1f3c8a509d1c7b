#include "support/PrivateBus.h"

#include <QDir>
#include <QFile>

#include "support/TestHome.h"

namespace TestSupport {

namespace {

const char kConfiguration[] =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=%1</listen>
  <servicedir>%2</servicedir>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

void writeText(const QString& path, const QString& text) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0)
        qFatal("can't write %s", qPrintable(path));
}

}  // namespace

PrivateBus::PrivateBus() {
    QDir().mkpath(servicesDir());
    const QString configuration = m_dir.path() + "/bus.conf";
    writeText(configuration, QString(kConfiguration).arg(m_dir.path(), servicesDir()));
    const QString log = m_dir.path() + "/bus.log";
    m_daemon.setStandardErrorFile(log);
    m_daemon.start("dbus-daemon", {"--config-file=" + configuration, "--nofork", "--print-address"});
    m_address = m_daemon.readLineWithin();
    if (m_address.isEmpty())
        qFatal("no private bus: %s %s", qPrintable(m_daemon.errorString()), readFile(log).constData());
    m_environment.set("DBUS_SESSION_BUS_ADDRESS", m_address.toUtf8());
}

void PrivateBus::addActivatableService(const QString& name, const QString& command) {
    writeText(servicesDir() + "/" + name + ".service",
              QString("[D-BUS Service]\nName=%1\nExec=%2\n").arg(name, command));
    // The daemon watches the directory, but a test can't wait for that: tell it.
    runProcess("dbus-send", {"--bus=" + m_address, "--print-reply", "--dest=org.freedesktop.DBus",
                             "/org/freedesktop/DBus", "org.freedesktop.DBus.ReloadConfig"});
}

void PrivateBus::stop() {
    m_daemon.stop();
}

}  // namespace TestSupport
