#include "shell/configuration/parameters/LogChannels.h"
#include "support/Table.h"

using TestSupport::Table;

class LogChannelsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void withEntry_data() {
        const Table<QString, int, QString> row("stored", "entry", "expected");
        row("first", "", 1, "+event,+win,+x11drv");
        row("second", "+event,+win,+x11drv", 6, "+event,+key,+keyboard,+win,+x11drv");
        row("written by hand", " err+all ,, +d3d,fixme-all,err+all,", 2,
            "+d3d,+file,+ntdll,err+all,fixme-all");
        row("below the list", " b,a", -1, " b,a");
        row("behind the list", " b,a", 10, " b,a");
    }
    void withEntry() {
        QFETCH(QString, stored);
        QFETCH(int, entry);
        QTEST(LogChannels::withEntry(stored, entry), "expected");
    }

    void environment_data() {
        const Table<QString, QString, QString> row("channels", "wine", "expected");
        row("none", "", "lumora-wine10-stable",
            "WINEDEBUG=err+all,fixme+all,trace+process,+pid,+tid,trace+seh,+text,warn+file");
        row("none, Proton", "", "ge-proton9",
            "WINEDEBUG=err+all,fixme+all,trace+process,+pid,+tid,trace+seh,+text,");
        row("own, Proton", "+d3d,warn+file", "lumora-ge-proton10", "WINEDEBUG=+d3d,");
    }
    void environment() {
        QFETCH(QString, channels);
        QFETCH(QString, wine);
        QTEST(LogChannels::environment(channels, wine), "expected");
    }
};

QTEST_GUILESS_MAIN(LogChannelsTest)
#include "LogChannelsTest.moc"
