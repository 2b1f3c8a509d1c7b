#include "support/PrivateBus.h"

#include <QFile>

#include "support/TestHome.h"

namespace TestSupport {

namespace {

const char Configuration[] =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=%1</listen>
  <auth>EXTERNAL</auth>
  %2
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

}  // namespace

PrivateBus::PrivateBus(const QString& services) {
    QFile configuration(m_dir.path() + "/bus.conf");
    if (!configuration.open(QIODevice::WriteOnly))
        qFatal("can't write %s", qPrintable(configuration.fileName()));
    const QString directory = services.isEmpty() ? QString() : "<servicedir>" + services + "</servicedir>";
    configuration.write(QString(Configuration).arg(m_dir.path(), directory).toUtf8());
    configuration.close();
    const QString log = m_dir.path() + "/bus.log";
    m_daemon.setStandardErrorFile(log);
    m_daemon.start("dbus-daemon",
                   {"--config-file=" + configuration.fileName(), "--nofork", "--print-address"});
    m_address = m_daemon.readLineWithin();
    if (m_address.isEmpty())
        qFatal("no private bus: %s %s", qPrintable(m_daemon.errorString()), readFile(log).constData());
    m_environment.set("DBUS_SESSION_BUS_ADDRESS", m_address.toUtf8());
}

}  // namespace TestSupport
