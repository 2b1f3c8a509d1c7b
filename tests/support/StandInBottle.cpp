#include "support/StandInBottle.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace TestSupport {

namespace {

/// The bottle's Wine; see the class. The files "alive" and "window" say what the window tool reports.
const char StandIn[] = R"sh(#!/bin/sh
cd "$WINEPREFIX" || exit
count() { cat "$1" 2>/dev/null | wc -l; }
# Limited, so that no process stays behind.
wait_for() { n=0; until [ -e "$1" ] || [ $n -gt 400 ]; do n=$((n + 1)); sleep 0.05; done; }
show() { touch alive window; wait_for close; rm -f window close; }
case $1 in
taskkill.exe) ;;
*enum_process_window.exe)
    echo >> watches
    n=0; until [ "$(count runs)" -ge "$(count watches)" ] || [ $n -gt 400 ]; do n=$((n + 1)); sleep 0.05; done
    n=0
    while [ $n -lt 400 ]; do
        n=$((n + 1))
        echo "::process list"; [ -e alive ] && echo "9 - x - a.exe"
        echo "::window list"; [ -e window ] && echo "9 - Title"
        echo "::end"; sleep 0.05
    done ;;
*)
    rm -f alive window close; echo >> runs; RUN=$(count runs)
    [ -e "log$RUN" ] && cat "log$RUN"
    . ./program; code=$?; rm -f alive; exit $code ;;
esac
)sh";

}  // namespace

StandInBottle::StandInBottle(const QString& data, const QString& name)
    : m_directory(data + "/lumora-wine-bottles/bottles/" + name) {
    QDir(m_directory).removeRecursively();
    QDir().mkpath(m_directory + "/drive_c/windows/Fonts");
    const QString wine = m_directory + "/wine";
    write("wine", StandIn);
    QFile::setPermissions(wine, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    write("launch.json",
          QJsonDocument(QJsonObject{{"version", 1}, {"source", QJsonObject()}, {"wine", wine}}).toJson());
}

void StandInBottle::write(const QString& name, const QByteArray& content) const {
    QFile file(m_directory + "/" + name);
    if (!m_directory.isEmpty() && file.open(QIODevice::WriteOnly))
        file.write(content);
}

}  // namespace TestSupport
